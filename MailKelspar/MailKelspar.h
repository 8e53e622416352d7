// Mail as people read it: where an exact operation keeps an oddity of its contract, its readable
// sibling stands here and follows the published format.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

class MailKelspar {
 public:
  // The whole HTML that an RTF body encapsulates (MS-OXRTFEX): the htmltag contents and the words
  // between them, escapes and code pages decoded, without what \htmlrtf hides. The readable sibling
  // of RTFKelspar::extractHTMLFromEncapsulatedRTF, which yields the markup alone.
  //
  // nil for nil, for bytes that are no RTF, and for RTF without \fromhtml. A charset that the HTML
  // declares is that of the message it was sent in; what is written out as UTF-8 should go through
  // `htmlDeclaringUTF8` first.
  [[nodiscard]] static NSString htmlFromEncapsulatedRTF(const NSData& rtf);

  // The same HTML with every charset that its meta elements declare replaced by utf-8. The argument
  // itself when there is none; nil for nil.
  [[nodiscard]] static NSString htmlDeclaringUTF8(const NSString& html);

  // The RTF bytes of a stored body: compressed ("LZFu") or, unlike `getRTFForData`, stored as it is
  // ("MELA"; what stands behind the 16-byte header, cut to the raw size). At most eight times as
  // long as the blob. nil for anything else, and for a blob under 16 bytes.
  [[nodiscard]] static NSData rtfFromStoredBody(const NSData& blob);

  // RTF as it is sent on.

  // The RTF with the elements of `pictures` at its marks of attachments ("\objattph", MS-OXRTFEX),
  // the first at the first mark and so on: data that is PNG or JPEG as a picture, a text as text;
  // at anything else the mark stays. The argument itself when there is no mark. nil for nil.
  // Linear. The readable sibling of EmailUtilities::buildRTFMessageContent, which puts images at
  // the lines' beginnings.
  [[nodiscard]] static NSData placePictures(const NSArray& pictures, const NSData& rtf);

  // The RTF with the text as paragraphs of their own above what it shows; HTML that it
  // encapsulates does not have them. The argument itself for the empty text and for what is no
  // RTF. Linear.
  [[nodiscard]] static NSData putText(const NSString& text, const NSData& rtf);

  // An RTF document of plain text, a line a paragraph. nil for nil.
  [[nodiscard]] static NSData rtfFromText(const NSString& text);

  // Headers. Values are the bytes behind the field name's colon, folded or not; texts that come out
  // are on one line, with blanks for line ends and NULs. Linear.

  // The text of an unstructured value or of a phrase (RFC 2047), with the repairs that mail needs:
  // the bytes of adjacent words are joined before they are decoded, "_" is a space, words may stand
  // against punctuation and contain blanks, language tags (RFC 2231, 5) are dropped, bytes outside
  // words are read as UTF-8 or else Windows-1252. nil for nil.
  //
  //   decodeHeader("=?utf-8?Q?caf=C3?= =?utf-8?Q?=A9?=");  // "caf\u00E9"
  [[nodiscard]] static NSString decodeHeader(const NSData& value);

  // A value with parameters: the value itself at "", then each parameter at its name in lower case.
  // Continuations and percent escapes (RFC 2231) are put together, quoted strings unquoted,
  // encoded words inside them decoded. Of equal names the first counts. nil for nil.
  [[nodiscard]] static NSDictionary parametersOfHeader(const NSData& value);

  // The mailboxes of an address list (RFC 5322, 3.4): dictionaries with "name" and "address",
  // either of which may be empty. Comments serve as names where there is none; groups are opened.
  // What is no address at all comes back as a name. nil for nil.
  [[nodiscard]] static NSArray addressesFromHeader(const NSData& value);

  // A date (RFC 5322, 3.3 and 4.3) with comments, obsolete zones and years of two or three digits;
  // "GMT+0200", the form of asctime and ISO 8601 are read, too. Without a zone, and in a zone that
  // is not known, it is UTC. nil for anything else.
  [[nodiscard]] static NSDate dateFromHeader(const NSString& value);

  // A content identifier without angle brackets, NULs, blanks, "cid:" and percent escapes. nil for
  // nil.
  [[nodiscard]] static NSString bareContentIdentifier(const NSString& value);

  // Bytes as text.

  // The name of the encoding that a charset label means by the WHATWG table ("gb2312": "GBK"), in
  // any case, blanks around it ignored; mail's further labels (utf-7, iso-2022-kr, cp850 and their
  // like) and numbers of code pages are known as well. nil for a label that is none.
  [[nodiscard]] static NSString encodingOfCharsetLabel(const NSString& label);

  // Text under that label. Bytes that are not valid in it are read as UTF-8 when they are that, and
  // else become U+FFFD one by one; so are bytes over 127 under an ASCII label. Without a usable
  // label: UTF-8, or else Windows-1252. A byte-order mark is dropped. nil for nil.
  [[nodiscard]] static NSString textFromData(const NSData& bytes, const NSString& label);

  // The label that HTML's first 65,536 bytes declare, or that of its byte-order mark; else nil.
  [[nodiscard]] static NSString charsetDeclaredByHTML(const NSData& html);

  // The bytes of a body by its transfer encoding's name, in any case: "base64" (foreign characters
  // are passed over, padding inside ends a quantum), "quoted-printable" (a broken escape stays as
  // it is), "x-uuencode". Under any other name the bytes themselves. nil for nil.
  [[nodiscard]] static NSData decodeTransfer(const NSData& body, const NSString& encoding);

  // Bodies.

  // What a browser would show of the HTML, as text. nil for nil.
  [[nodiscard]] static NSString textFromHTML(const NSString& html);

  // HTML that is safe to show: elements, attributes, CSS properties and link schemes by an
  // allow-list, all text escaped, every element closed. Scripts, forms, frames, comments and
  // whatever would be fetched from the network are gone. Images keep "cid:" and "data:image/"
  // sources, links http, https, mailto, tel, ftp and cid.
  //
  // A dictionary: "html", and "removed", the number of remote contents taken out. nil for nil.
  [[nodiscard]] static NSDictionary safeHTML(const NSString& html);

  // Which of a message's bodies shows it best: "html", "rtf", "text", or nil when there is none.
  // HTML, also inside RTF, goes before RTF, RTF before plain text unless it was made from it; a
  // body without a word gives way to one that has some.
  [[nodiscard]] static NSString bestBody(const NSString& text, const NSString& html,
                                         const NSData& rtf);

  // Pages.

  // The text as a PDF document whose lines are whole: one that a page's end would cut begins the
  // next page, unless it is higher than a page. The readable sibling of
  // createPdfDataFromAttributedString, which cuts pages at multiples of their height.
  //
  // `paper` is "A3", "A4", "A5", "B5", "Letter", "Legal", "Tabloid", in any case, or
  // "WIDTHxHEIGHT" in millimetres, 50 to 2,000 a side; nil and empty are pages of 550 to 715
  // points, as large as the lines. `margin` (points) is left free above and below and at least at
  // the sides; lines are drawn smaller where they would not fit between. Without it the paper has
  // half an inch above and below and at least 20 points at the sides, pages without a paper none.
  //
  // nil for nil and the empty text, for paper that is none of these, and for a margin that is
  // negative, no number, or leaves less than an inch. Any thread may call. Linear.
  //
  //   createPdfDataFromAttributedString(NSAttributedString::initWithRTF(rtf), u"A4");
  [[nodiscard]] static NSData createPdfDataFromAttributedString(const NSAttributedString& text,
                                                                const NSString& paper);
  [[nodiscard]] static NSData createPdfDataFromAttributedString(const NSAttributedString& text,
                                                                const NSString& paper,
                                                                double margin);
};

}  // namespace kelspar
