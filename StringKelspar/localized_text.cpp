// Interface texts by key, from gettext's message catalogues beside the main bundle.
#include "StringKelspar/localized_text.h"

#include <libintl.h>
#include <unistd.h>

#include <climits>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {

namespace {

// The program's file stands in PREFIX/bin (or libexec, ...), its catalogues in PREFIX/share/locale.
// Empty when the system does not tell.
std::string mainBundleCatalogues() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || length == sizeof path) return "";
  std::string folder(path, static_cast<size_t>(length));
  folder.resize(folder.rfind('/') + 1);
  return folder + "../share/locale";
}

// The key itself when there is none: an unknown domain, a key without an entry, a name that is no
// file's.
NSString translation(const NSString& key, const NSString& domain, const std::string& catalogues) {
  const std::string name = domain.utf8(), text = key.utf8();
  const bool isFileName = name.find('/') == name.npos && name.find('\0') == name.npos;
  if (!isFileName || text.find('\0') != text.npos) return key;
  ::bindtextdomain(name.c_str(), catalogues.c_str());
  ::bind_textdomain_codeset(name.c_str(), "UTF-8");
  const char* found = ::dgettext(name.c_str(), text.c_str());
  return found == text.c_str() ? key : NSString(found);
}

}  // namespace

NSString localizedString(const NSString& key, const NSString& table,
                         const std::string& catalogues) {
  if (key.isEmpty()) return u""_ns;
  if (catalogues.empty()) {
    NSLog(u"Warning: mainBundle is nil, returning original string");
    return key;
  }
  const NSString found = translation(key, table.isEmpty() ? u"Localizable"_ns : table, catalogues);
  if (!found.isEmpty()) return found;
  NSLog(u"Warning: Localization returned nil or empty for key '%@' in table '%@'", key,
        table ? table : u"(default)"_ns);
  return key;
}

NSString StringKelspar::localizedStringFor(const NSString& key, const NSString& table) {
  static const std::string catalogues = mainBundleCatalogues();
  return localizedString(key, table, catalogues);
}

}  // namespace kelspar
