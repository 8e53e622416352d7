// kelspar-extension: every operation for hosts in other processes.
#include "platform/runtime/NSExtensionMain.h"

int main(int argc, char** argv) { return kelspar::NSExtensionMain(argc, argv); }
