// .msg: libgsf opens the compound file, everything inside is read here.
#include "host/msg_reader.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-input-memory.h>
#include <gsf/gsf-utils.h>

#include <algorithm>
#include <mutex>

#include "BitKelspar/BitKelspar.h"
#include "host/mapi_properties.h"

namespace kelspar::host {

namespace {

constexpr std::string_view kSignature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr std::string_view kValuePrefix = "__substg1.0_";
constexpr std::string_view kPropertiesName = "__properties_version1.0";
constexpr int kMostChildren = 20000;

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref>;

// Damage is told by what is missing from the message, not on standard error.
void beSilent(const char*, GLogLevelFlags, const char*, void*) {}

void startLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    gsf_init();
    // It speaks without a domain as well.
    for (const char* domain : {"libgsf", "libgsf:msole", "GLib-GObject", ""}) {
      g_log_set_handler(domain, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
                        beSilent, nullptr);
    }
  });
}

bool parseHex(std::string_view digits, uint32_t* number) {
  *number = 0;
  for (const char c : digits) {
    const int value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                             : -1;
    if (value < 0) return false;
    *number = *number << 4 | static_cast<uint32_t>(value);
  }
  return true;
}

struct Child {
  std::string name;
  Object<GsfInput> input;
};

// To the library streams are storages, too, with fewer than no children.
bool isStorage(const Child& child) {
  return GSF_IS_INFILE(child.input.get()) &&
         gsf_infile_num_children(GSF_INFILE(child.input.get())) >= 0;
}

class Reader {
 public:
  Reader(const ReadOptions& options, size_t fileSize)
      : options_(options), fileSize_(fileSize), budget_(4 * fileSize + (size_t{1} << 20)) {}

  std::shared_ptr<Message> readMessage(GsfInfile* storage, bool isTop, int depth) {
    std::vector<Child> children = childrenOf(storage);
    auto message = std::make_shared<Message>();
    message->format = "msg";
    MapiProperties properties = propertiesOf(children, isTop ? 32 : 24);
    if (properties.isEmpty()) return nullptr;
    if (isTop) {
      codePage_ = properties.statedCodePage();
      languagePage_ = properties.languagePage();
    }
    prepare(&properties);
    fillMessage(properties, message.get());
    for (const Child& child : children) {
      if (!isStorage(child)) continue;
      if (child.name.starts_with("__recip_version1.0_")) {
        MapiProperties recipient = propertiesOf(childrenOf(GSF_INFILE(child.input.get())), 8);
        prepare(&recipient);
        addRecipient(recipient, message.get());
      } else if (child.name.starts_with("__attach_version1.0_")) {
        addAttachment(GSF_INFILE(child.input.get()), depth, message.get());
      }
    }
    if (damaged_ && isTop) message->faults.emplace_back("parts of the file cannot be read");
    return message;
  }

 private:
  void prepare(MapiProperties* properties) const {
    properties->setCodePage(codePage_, languagePage_);
    properties->setCharset(options_.charset);
  }

  static std::vector<Child> childrenOf(GsfInfile* storage) {
    std::vector<Child> children;
    const int count = std::min(gsf_infile_num_children(storage), kMostChildren);
    for (int i = 0; i < count; ++i) {
      const char* name = gsf_infile_name_by_index(storage, i);
      if (!name || !std::string_view(name).starts_with("__")) continue;
      Object<GsfInput> input(gsf_infile_child_by_index(storage, i));
      if (input) children.push_back({name, std::move(input)});
    }
    // The order of a directory is by the length of names first; ours is the writer's count.
    std::ranges::sort(children, {}, &Child::name);
    return children;
  }

  NSData bytesOf(GsfInput* stream) {
    const gsf_off_t size = gsf_input_size(stream);
    if (size <= 0) return NSData(std::string());
    const auto length = static_cast<size_t>(size);
    if (length > fileSize_ || length > budget_) {
      damaged_ = true;
      return nil;
    }
    budget_ -= length;
    std::string bytes(length, '\0');
    if (!gsf_input_read(stream, length, reinterpret_cast<uint8_t*>(bytes.data()))) {
      damaged_ = true;
      return nil;
    }
    return NSData(std::move(bytes));
  }

  MapiProperties propertiesOf(const std::vector<Child>& children, size_t headerSize) {
    MapiProperties properties;
    for (const Child& child : children) {
      if (isStorage(child)) continue;
      if (child.name == kPropertiesName) {
        addFixed(bytesOf(child.input.get()), headerSize, &properties);
      } else {
        addStream(child, &properties);
      }
    }
    return properties;
  }

  // Values of up to eight bytes stand in one stream, 16 bytes an entry (MS-OXMSG 2.4.2).
  static void addFixed(const NSData& entries, size_t headerSize, MapiProperties* properties) {
    constexpr size_t kEntrySize = 16, kValueAt = 8;
    for (size_t at = headerSize; at + kEntrySize <= entries.length(); at += kEntrySize) {
      const uint16_t type = BitKelspar::readU16FromData(entries, at);
      const uint16_t identifier = BitKelspar::readU16FromData(entries, at + 2);
      if (isFixed(type)) properties->add(identifier, type, entries.subdata(at + kValueAt, 8));
    }
  }

  static bool isFixed(uint16_t type) {
    return type == kMapiInt16 || type == kMapiInt32 || type == kMapiBoolean || type == kMapiTime ||
           type == kMapiInt64;
  }

  void addStream(const Child& child, MapiProperties* properties) {
    uint32_t tag = 0;
    const std::string_view name = child.name;
    if (name.size() != kValuePrefix.size() + 8 || !name.starts_with(kValuePrefix) ||
        !parseHex(name.substr(kValuePrefix.size()), &tag)) {
      return;
    }
    const auto type = static_cast<uint16_t>(tag & 0xFFFF);
    if (type != kMapiUnicode && type != kMapiString8 && type != kMapiBinary) return;
    if (const NSData bytes = bytesOf(child.input.get())) {
      properties->add(static_cast<uint16_t>(tag >> 16), type, bytes);
    }
  }

  void addAttachment(GsfInfile* storage, int depth, Message* message) {
    const std::vector<Child> children = childrenOf(storage);
    MapiProperties properties = propertiesOf(children, 8);
    prepare(&properties);
    Attachment attachment = attachmentFrom(properties);
    for (const Child& child : children) {
      if (child.name != "__substg1.0_3701000D" || !isStorage(child)) continue;
      if (depth >= kMostNesting) {
        message->faults.emplace_back("messages inside messages nest too deeply");
      } else {
        attachment.message = readMessage(GSF_INFILE(child.input.get()), false, depth + 1);
      }
    }
    message->attachments.push_back(std::move(attachment));
  }

  const ReadOptions& options_;
  const size_t fileSize_;
  size_t budget_;
  uint32_t codePage_ = 0, languagePage_ = 0;
  bool damaged_ = false;
};

}  // namespace

bool isCompoundFile(const NSData& bytes) { return bytes.chars().starts_with(kSignature); }

std::shared_ptr<Message> readMSG(const NSData& bytes, const ReadOptions& options) {
  if (!isCompoundFile(bytes)) return nullptr;
  startLibrary();
  const Object<GsfInput> memory(
      gsf_input_memory_new(bytes.bytes(), static_cast<gsf_off_t>(bytes.length()), FALSE));
  const Object<GsfInfile> file(gsf_infile_msole_new(memory.get(), nullptr));
  if (!file) return nullptr;
  return Reader(options, bytes.length()).readMessage(file.get(), true, 0);
}

}  // namespace kelspar::host
