// Feeds arbitrary bytes to the scene file reader. Each input is read twice: as it is,
// which mostly exercises the frame, and with its checksum and length made to fit, so that
// the mutations reach the body parser. A file that reads must write and read again.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "quillon/format/byte_writer.h"
#include "quillon/format/file_frame.h"
#include "quillon/format/ory_format.h"

using namespace quillon;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Document doc;
  std::string error;
  format::DecodeDocument(data, size, doc, &error);
  if (size < format::kFrameHeaderBytes) return 0;

  format::ByteWriter sealed;
  sealed.bytes.assign(data, data + size);
  format::SealFrame(sealed);
  if (!format::DecodeDocument(sealed.bytes.data(), sealed.bytes.size(), doc, &error)) return 0;
  std::vector<std::uint8_t> again;
  if (!format::EncodeDocument(doc, again, &error)) std::abort();
  Document copy;
  if (!format::DecodeDocument(again.data(), again.size(), copy, &error)) std::abort();
  return 0;
}
