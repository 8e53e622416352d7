// HTML of strangers made safe to show: read into tokens, written anew from what is on the lists.
#include <algorithm>
#include <array>
#include <vector>

#include "MailKelspar/MailKelspar.h"
#include "MailKelspar/safe_css.h"
#include "platform/foundation/ascii.h"
#include "platform/richtext/html_tokenizer.h"
#include "platform/richtext/html_writer.h"

namespace kelspar {

namespace {

using html::Attribute;
using html::Tag;
using html::Token;

constexpr Tag kAllowed[] = {
    Tag::a,          Tag::abbr,   Tag::address,    Tag::article,  Tag::b,       Tag::bdi,
    Tag::bdo,        Tag::big,    Tag::blockquote, Tag::br,       Tag::caption, Tag::center,
    Tag::cite,       Tag::code,   Tag::col,        Tag::colgroup, Tag::dd,      Tag::del,
    Tag::dfn,        Tag::dir,    Tag::div,        Tag::dl,       Tag::dt,      Tag::em,
    Tag::figcaption, Tag::figure, Tag::font,       Tag::footer,   Tag::h1,      Tag::h2,
    Tag::h3,         Tag::h4,     Tag::h5,         Tag::h6,       Tag::header,  Tag::hr,
    Tag::i,          Tag::img,    Tag::ins,        Tag::kbd,      Tag::li,      Tag::main,
    Tag::mark,       Tag::menu,   Tag::ol,         Tag::p,        Tag::pre,     Tag::q,
    Tag::rp,         Tag::rt,     Tag::ruby,       Tag::s,        Tag::samp,    Tag::section,
    Tag::small,      Tag::span,   Tag::strike,     Tag::strong,   Tag::sub,     Tag::sup,
    Tag::table,      Tag::tbody,  Tag::td,         Tag::tfoot,    Tag::th,      Tag::thead,
    Tag::tr,         Tag::tt,     Tag::u,          Tag::ul,       Tag::var,     Tag::wbr,
};

// Gone with all that is inside; of others that are not allowed what they enclose stays.
constexpr Tag kDropped[] = {
    Tag::script,   Tag::template_, Tag::title, Tag::iframe, Tag::noembed,
    Tag::noframes, Tag::svg,       Tag::math,  Tag::select, Tag::textarea,
};

constexpr std::u16string_view kAttributes[] = {
    u"align",   u"alt",     u"bgcolor", u"border", u"cellpadding", u"cellspacing", u"class",
    u"color",   u"colspan", u"dir",     u"face",   u"height",      u"hspace",      u"lang",
    u"noshade", u"nowrap",  u"rowspan", u"size",   u"span",        u"start",       u"title",
    u"type",    u"valign",  u"value",   u"vspace", u"width",
};
static_assert(std::ranges::is_sorted(kAttributes));

// What a browser would fetch without being asked to, besides links of some elements.
constexpr std::u16string_view kFetching[] = {u"background", u"data",   u"dynsrc", u"lowsrc",
                                             u"poster",     u"srcset", u"src"};
constexpr std::u16string_view kImageTypes[] = {
    u"data:image/png;",  u"data:image/jpeg;", u"data:image/gif;",   u"data:image/jpg;",
    u"data:image/webp;", u"data:image/bmp;",  u"data:image/x-icon;"};

// As a browser reads an address: controls and blanks around it and line ends inside are nothing.
std::u16string address(std::u16string_view raw) {
  std::u16string text;
  for (const char16_t c : raw) {
    if (c > u' ' || (c == u' ' && !text.empty())) text += c;
  }
  while (!text.empty() && text.back() == u' ') text.pop_back();
  return text;
}

template <class List>
bool beginsWithOneOf(std::u16string_view text, const List& list) {
  const std::u16string lower = ascii::lowerCase(text.substr(0, 32));
  return std::ranges::any_of(list, [&](std::u16string_view prefix) {
    return std::u16string_view(lower).starts_with(prefix);
  });
}

class SafeWriter {
 public:
  explicit SafeWriter(std::u16string_view html) : tokens_(html) {}

  NSDictionary write() {
    for (;;) {
      const Token& token = tokens_.next();
      if (token.kind == Token::Kind::end) break;
      take(token);
    }
    closeAll();
    return NSDictionary{{u"html", NSString(std::move(out_))}, {u"removed", NSNumber(removed_)}};
  }

 private:
  void take(const Token& token) {
    if (dropping_ != Tag::none) return drop(token);
    switch (token.kind) {
      case Token::Kind::text:
        takeText(token.text);
        break;
      case Token::Kind::startTag:
        start(token);
        break;
      case Token::Kind::endTag:
        end(token.tag);
        break;
      default:
        break;
    }
  }

  void drop(const Token& token) {
    if (token.kind == Token::Kind::startTag) countRemote(token.tag);
    if (token.tag != dropping_) return;
    if (token.kind == Token::Kind::startTag && !token.selfClosing) ++dropped_;
    if (token.kind == Token::Kind::endTag && --dropped_ == 0) dropping_ = Tag::none;
  }

  void takeText(std::u16string_view text) {
    if (inStyle_) {
      sheet_.append(text);
    } else {
      escape(text);
    }
  }

  void escape(std::u16string_view text) {
    for (const char16_t c : text) {
      switch (c) {
        case u'&':
          out_ += u"&amp;";
          break;
        case u'<':
          out_ += u"&lt;";
          break;
        case u'>':
          out_ += u"&gt;";
          break;
        case u'"':
          out_ += u"&quot;";
          break;
        case u'\0':
          break;
        default:
          out_ += c;
      }
    }
  }

  void start(const Token& token) {
    if (token.tag == Tag::style) {
      inStyle_ = true;
      return;
    }
    if (std::ranges::find(kDropped, token.tag) != std::end(kDropped)) {
      countRemote(token.tag);
      if (token.selfClosing && (token.tag == Tag::svg || token.tag == Tag::math)) return;
      dropping_ = token.tag;
      dropped_ = 1;
      return;
    }
    if (token.tag == Tag::body) return body();
    const Tag tag = token.tag == Tag::image ? Tag::img : token.tag;
    if (std::ranges::find(kAllowed, tag) == std::end(kAllowed)) {
      countRemote(tag);
      return;
    }
    out_.append(u"<").append(html::nameOf(tag));
    for (const Attribute& each : tokens_.attributes()) attribute(tag, each);
    out_ += u'>';
    if (html::has(tag, html::kVoid)) return;
    ++open_[static_cast<size_t>(tag)];
    order_.push_back(tag);
  }

  // What the body's tag says of the looks is a block's around all that follows.
  void body() {
    countRemote(Tag::body);
    if (!order_.empty() || isInBody_) return;
    const size_t before = out_.size();
    out_ += u"<div";
    const size_t bare = out_.size();
    std::u16string style;
    const auto add = [&style](std::u16string_view css) {
      size_t removed = 0;  // they are counted above
      const std::u16string kept = safe::declarations(css, &removed);
      if (!kept.empty()) style.append(style.empty() ? u"" : u"; ").append(kept);
    };
    for (const Attribute& each : tokens_.attributes()) {
      const std::u16string name = ascii::lowerCase(each.name);
      const std::u16string value(each.value());
      if (name == u"bgcolor") add(u"background-color:" + value);
      if (name == u"text") add(u"color:" + value);
      if (name == u"class" || name == u"dir" || name == u"lang") append(name, value);
    }
    const Attribute* const own = tokens_.attribute(u"style");
    if (own) add(own->value());
    if (!style.empty()) append(u"style", style);
    isInBody_ = out_.size() > bare;
    isInBody_ ? void(out_ += u'>') : out_.resize(before);
  }

  // An element that is left out altogether may have wanted something from the network.
  void countRemote(Tag tag) {
    for (const Attribute& each : tokens_.attributes()) {
      const std::u16string name = ascii::lowerCase(each.name);
      const bool isLink = name == u"href" || name == u"xlink:href";
      if (isLink ? tag != Tag::a && tag != Tag::area && tag != Tag::base
                 : std::ranges::find(kFetching, name) != std::end(kFetching)) {
        countAddresses(name, each.value());
      }
    }
    const Attribute* style = tokens_.attribute(u"style");
    if (style) (void)safe::declarations(style->value(), &removed_);
  }

  void countAddresses(std::u16string_view name, std::u16string_view value) {
    if (name != u"srcset") {
      removed_ += isRemote(value);
      return;
    }
    // Candidates apart by commas, each an address and what it is for (HTML, 4.8.4.2.1).
    while (!value.empty()) {
      const size_t comma = std::min(value.find(u','), value.size());
      removed_ += isRemote(value.substr(0, comma));
      value.remove_prefix(std::min(comma + 1, value.size()));
    }
  }

  static bool isRemote(std::u16string_view value) {
    std::u16string place = address(value);
    std::ranges::replace(place, u'\\', u'/');  // as browsers read them
    return beginsWithOneOf(place,
                           std::array<std::u16string_view, 4>{u"http:", u"https:", u"//", u"ftp:"});
  }

  void attribute(Tag tag, const Attribute& each) {
    const std::u16string name = ascii::lowerCase(each.name);
    if (name == u"style") {
      const std::u16string kept = safe::declarations(each.value(), &removed_);
      if (!kept.empty()) append(name, kept);
    } else if (name == u"href" && tag == Tag::a) {
      const std::u16string link = address(each.value());
      if (hasSafeScheme(link)) append(name, link);
    } else if (name == u"src" && tag == Tag::img) {
      image(each.value());
    } else if (std::ranges::find(kFetching, name) != std::end(kFetching)) {
      countAddresses(name, each.value());
    } else if (std::ranges::binary_search(kAttributes, std::u16string_view(name))) {
      append(name, each.value());
    }
  }

  void image(std::u16string_view value) {
    const std::u16string source = address(value);
    if (beginsWithOneOf(source, std::array<std::u16string_view, 1>{u"cid:"}) ||
        beginsWithOneOf(source, kImageTypes)) {
      append(u"src", source);
    } else {
      removed_ += isRemote(source);
    }
  }

  void append(std::u16string_view name, std::u16string_view value) {
    out_.append(u" ").append(name).append(u"=\"");
    escape(value);
    out_ += u'"';
  }

  void end(Tag tag) {
    if (tag == Tag::style) {
      endStyle();
    } else if (tag < Tag::count && open_[static_cast<size_t>(tag)] > 0) {
      --open_[static_cast<size_t>(tag)];
      out_.append(u"</").append(html::nameOf(tag)).append(u">");
    }
  }

  void endStyle() {
    if (!inStyle_) return;
    inStyle_ = false;
    const std::u16string kept = safe::styleSheet(sheet_, &removed_);
    sheet_.clear();
    if (!kept.empty()) out_.append(u"<style>\n").append(kept).append(u"</style>");
  }

  void closeAll() {
    endStyle();
    for (size_t i = order_.size(); i-- > 0;) end(order_[i]);
    if (isInBody_) out_ += u"</div>";
  }

  html::Tokenizer tokens_;
  std::u16string out_, sheet_;
  size_t removed_ = 0;
  bool inStyle_ = false;
  bool isInBody_ = false;
  Tag dropping_ = Tag::none;
  size_t dropped_ = 0;
  std::array<uint32_t, static_cast<size_t>(Tag::count)> open_{};
  std::vector<Tag> order_;
};

}  // namespace

NSDictionary MailKelspar::safeHTML(const NSString& html) {
  return html ? SafeWriter(html.view()).write() : NSDictionary();
}

}  // namespace kelspar
