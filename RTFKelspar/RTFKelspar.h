// Rich-text bodies as message stores keep them: compressed RTF decoded, encapsulated HTML taken
// out, colours of that HTML brought into the RTF.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar {

// All operations are stateless; any thread may call them. Failures are logged as one line where
// stated and are otherwise only a null, nil or false result.
class RTFKelspar {
 public:
  // Compressed RTF (MS-OXRTFCP)

  // Whether the type field, the 32 bits at byte 8, is that of compressed RTF ("LZFu") or of the
  // format's uncompressed form ("MELA"). At least 12 bytes must be there.
  // Null: logs "  ERROR: data is NULL" and is false.
  [[nodiscard]] static bool typeIsRTF(const uint8_t* data);

  // Decodes the blob of `size` bytes at `buffer`.
  //
  // "LZFu": `*returnData` becomes a buffer of `*returnSize` bytes that the caller frees with
  // `free`, or null when it could not be allocated. "MELA": nothing while `*returnData` is null;
  // otherwise a new buffer that holds the blob from byte 4 on, zero where the blob is too short.
  // Any other type leaves `*returnData` alone. `*returnSize` is the raw size that the header claims
  // (byte 4), whatever the type.
  //
  // Null and blobs under 16 bytes: one line is logged and nothing is written.
  static void getRTFFromBuffer(const uint8_t* buffer, uint64_t size, uint64_t* returnSize,
                               uint8_t** returnData);

  // Decodes the LZ stream of `compressedSize` bytes at `source` into a new buffer of exactly
  // `uncompressedSize` bytes, which the caller frees with `free`. Bytes that the stream does not
  // reach are zero, and their pages stay untouched; what does not fit is dropped. Null, and a line
  // in the log, when the buffer cannot be had.
  [[nodiscard]] static uint8_t* decodeRTFSource(const uint8_t* source, uint64_t compressedSize,
                                                uint64_t uncompressedSize);

  // The four bytes at `bytes` as a little-endian unsigned number; 0 for null.
  [[nodiscard]] static int64_t convertToLongLong(const uint8_t* bytes);

  // `count` x `size` zero bytes, to be freed with `free`; null when they cannot be had. Large
  // blocks are fresh pages from the system, which take up memory only once they are written.
  [[nodiscard]] static uint8_t* initializeArrayWithEntryCount(uint64_t count, uint64_t size);

  // Encapsulated HTML (MS-OXRTFEX)

  // Whether "\fromhtml" stands in the first 500 bytes. False for nil, for data under 50 bytes and
  // when one of those bytes is not ASCII.
  [[nodiscard]] static bool isEncapsulatedHTML(const NSData& rtf);

  // The characters inside the htmltag groups: the markup that the body carries, not its words.
  // (MailKelspar::htmlFromEncapsulatedRTF gives the whole HTML.) Hexadecimal escapes are not
  // decoded and braces never come out. The data is read as UTF-8 or else as Windows-1252.
  //
  // nil for nil, for data that is neither, and when nothing comes out.
  [[nodiscard]] static NSString extractHTMLFromEncapsulatedRTF(const NSData& rtf);

  // The same for data that `isEncapsulatedHTML`, otherwise nil.
  [[nodiscard]] static NSString extractHTMLIfEncapsulated(const NSData& rtf);

  // Colours of encapsulated HTML

  // Adds to `blocks`, ColourBlocks as `buildColourBlockArray` gives them, one for each colour that
  // the `lines` (texts) have in their first span start tags and no block has yet as its
  // "HTMLColour": {"Index": its position, "HTMLColour": the colour as written, "RTFColour": its
  // `convertToRTFColour`}. Spellings count: "Red" and "red" are two. Linear.
  static void generateRTFColourBlockArray(NSMutableArray& blocks, const NSArray& lines);

  // The colour-table group of these ColourBlocks, in their order: "{\colortbl;\red255...;}". Empty
  // for none.
  [[nodiscard]] static NSString generateRTFColourBlockFromArray(const NSArray& blocks);

  // Makes span colours show: each line of the RTF (not compressed) that holds "htmltag148" and a
  // span with a colour gets a reference " \cf2 " behind its first "\htmlrtf0", and the colour table
  // an entry for each colour. Without a table none is written. UTF-8; read as `rtfStringFromData`
  // reads it. nil for nil. Linear, whatever the text.
  //
  // Deliberate: the reference goes before every occurrence, in that line, of the text that follows
  // "\htmlrtf0"; where nothing follows, the line stays. A table without entries, where no colour is
  // added, is taken out.
  //
  //   generateRTFColourTagsFromEmbeddedHTMLInRTF(rtf)
  //   // {\colortbl;}                            {\colortbl;\red0\green0\blue255;}
  //   // {\*\htmltag148 <span style="color:     {\*\htmltag148 <span style="color:
  //   //  blue">}\htmlrtf {\htmlrtf0 sky   ->    blue">}\htmlrtf {\htmlrtf0 \cf1  sky
  [[nodiscard]] static NSData generateRTFColourTagsFromEmbeddedHTMLInRTF(const NSData& rtf);
};

}  // namespace kelspar
