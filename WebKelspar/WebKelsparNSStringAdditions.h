// What mail asks of text: charset labels, transfer decodings, encoded words, HTML to plain text and
// back, addresses. All operations are stateless and, where nothing else is said, linear in the
// receiver; any thread may call.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar::WebKelsparNSStringAdditions {

// Charset labels

// The encoding of a MIME charset label, in any case: 30 labels, matched exactly. UTF-8 for every
// other text. Deliberate: no aliases, so "us-ascii" is UTF-8.
[[nodiscard]] NSStringEncoding getCharacterEncodingFromMime(const NSString& receiver);

// Transfer decodings

// Quoted-printable (RFC 2045, 6.7) as text. Bytes that are not valid in the encoding are read by
// forceQuotedPrintableDecode. nil for nil.
//
// Deliberate: "_" stays, "=C2=A0" (in upper case) is a plain space, a soft break "=\r" is none, and
// UTF-8 bytes beyond the receiver's number of units are dropped before decoding.
//
//   quotedPrintableDecodeWithEncoding(u"caf=C3=A9", NSUTF8StringEncoding)  // u"café"
[[nodiscard]] NSString quotedPrintableDecodeWithEncoding(const NSString& receiver,
                                                         NSStringEncoding encoding);

// The percent-decoded receiver in the first available encoding that takes its bytes; the receiver
// when none does. nil for nil.
[[nodiscard]] NSString forceQuotedPrintableDecode(const NSString& receiver);

// Base64 (RFC 4648) as text. Strays are skipped, "=" ends the text, missing padding is none the
// worse. nil for nil and for bytes that are not valid in the encoding.
[[nodiscard]] NSString base64DecodeWithEncoding(const NSString& receiver,
                                                NSStringEncoding encoding);

// The UTF-8 bytes up to the first NUL, all but line feeds and printable ASCII as "=XX", trimmed of
// white space. nil for nil. Deliberate: "=" is not escaped, lines are not broken.
[[nodiscard]] NSString createQuotedPrintable(const NSString& receiver);

// Headers

// Header text with its encoded words (RFC 2047) decoded; the receiver when it has none, "" for nil.
//
// Deliberate: white space between words stays, a word that cannot be decoded is dropped, and a word
// reaches to the first "?=" with white space or the end behind it.
//
//   decodeMimeHeader(u"Re: =?ISO-8859-1?Q?caf=E9?= ok")  // u"Re: café ok"
[[nodiscard]] NSString decodeMimeHeader(const NSString& receiver);

// Decimal references with an escaped ampersand ("&amp;#233;", "&amp;233;") as the unit of that
// number, cut to 16 bits. Others stay. nil for nil.
//
// Each reference is replaced in turn over the whole text, and sees what those before it made.
// Linear, but for texts of more than 2^30 units, where each turn costs the text's length.
[[nodiscard]] NSString decodeHTMLFormattingTags(const NSString& receiver);

// HTML to text; "" for nil, empty and text with lone surrogates (but for the fallback).

// Decoded as quoted-printable in UTF-8 first, whatever it is; then imported.
[[nodiscard]] NSString stringFromHTML(const NSString& receiver);
// Imported; blanks and blank lines collapsed, lines trimmed.
[[nodiscard]] NSString stringByStrippingHTML(const NSString& receiver);
// Comments, styles, scripts and tags taken out, 14 block tags made line feeds, 16 entities decoded
// ("&amp;lt;" twice). White space stays.
[[nodiscard]] NSString stringByStrippingHTMLFallback(const NSString& receiver);

// Text to HTML. A column of 1 or more limits the width, in "ch".

// "" for nil and empty.
[[nodiscard]] NSString stringByConvertingToHTML(const NSString& receiver);
[[nodiscard]] NSString stringByConvertingToHTMLWithWrapAtColumn(const NSString& receiver,
                                                                int64_t column);
// "<pre></pre>" for nil and empty.
[[nodiscard]] NSString stringByConvertingToHTMLWithPreTag(const NSString& receiver);
[[nodiscard]] NSString stringByConvertingToHTMLWithPreTagAndWrapAtColumn(const NSString& receiver,
                                                                         int64_t column);

// Addresses (RFC 5321's shape: dot-atom or quoted local part, two labels or more, or a literal)

// False for nil. Constant stack.
[[nodiscard]] bool validateEmailAddress(const NSString& receiver);
// The valid address between the first "<" and the first ">", or the trimmed receiver; else nil.
[[nodiscard]] NSString cleanEmailAddress(const NSString& receiver);
// "mailto:" and the address; nil for an invalid one and where no URL can hold it.
[[nodiscard]] NSURL buildEmailAddressURL(const NSString& receiver);

}  // namespace kelspar::WebKelsparNSStringAdditions
