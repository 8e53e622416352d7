# The flags of our own build: warnings, sanitizers. They never reach those who link the library.
add_library(kelspar_compiler INTERFACE)
target_compile_options(kelspar_compiler INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Wformat=2 -Wimplicit-fallthrough
  $<$<BOOL:${KELSPAR_WERROR}>:-Werror>
  # GCC 12 warns about the code of std::string::insert when it is inlined at -O2.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_EXTENSIONS OFF)

if(KELSPAR_SANITIZE)
  set(KELSPAR_SANITIZER_FLAGS -fsanitize=${KELSPAR_SANITIZE} -fno-omit-frame-pointer
      -fno-sanitize-recover=all)
  add_compile_options(${KELSPAR_SANITIZER_FLAGS})
  add_link_options(${KELSPAR_SANITIZER_FLAGS})
endif()
if(KELSPAR_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES Clang)
    message(FATAL_ERROR "KELSPAR_FUZZ needs Clang (libFuzzer)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(KELSPAR_CCACHE ccache)
if(KELSPAR_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELSPAR_CCACHE})
endif()
