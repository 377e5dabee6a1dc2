#include "quillon/format/ory_format.h"

#include <stdexcept>

#include "quillon/format/byte_reader.h"
#include "quillon/format/document_reader.h"
#include "quillon/format/document_writer.h"
#include "quillon/format/file_frame.h"
#include "files/read_file.h"
#include "files/replace_file.h"

namespace quillon::format {
namespace {

bool SetError(std::string* error, const std::string& text) {
  if (error) *error = text;
  return false;
}

// Clear() keeps what identifies the node itself; a loaded document takes those from the file.
void EmptyDocument(Document& doc) {
  doc.Clear();
  doc.infoBits = 0;
  doc.layerId = 0;
}

}  // namespace

bool EncodeDocument(const Document& doc, std::vector<std::uint8_t>& bytes, std::string* error) {
  try {
    ByteWriter w;
    BeginFrame(w);
    WriteDocumentBody(w, doc);
    SealFrame(w);
    bytes = std::move(w.bytes);
    return true;
  } catch (const std::bad_alloc&) {
    throw;  // the caller knows what it was writing for
  } catch (const std::exception& e) {
    return SetError(error, e.what());
  }
}

bool DecodeDocument(const std::uint8_t* data, std::size_t size, Document& doc, std::string* error) {
  EmptyDocument(doc);
  try {
    CheckFrame(data, size);
    ByteReader r(data, size);
    r.pos = kFrameHeaderBytes;
    ReadDocumentBody(r, doc);
    return true;
  } catch (const FormatError& e) {
    EmptyDocument(doc);
    return SetError(error, e.what());
  } catch (const std::bad_alloc&) {
    EmptyDocument(doc);
    throw;
  }
}

bool WriteDocument(const Document& doc, const std::string& path, std::string* error) {
  std::vector<std::uint8_t> bytes;
  std::string problem;
  if (!EncodeDocument(doc, bytes, &problem)) return SetError(error, path + ": " + problem);
  return qae::files::ReplaceFileContent(
      path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), error);
}

bool ReadDocument(const std::string& path, Document& doc, std::string* error) {
  std::string bytes;
  if (!qae::files::ReadWholeFile(path, {kMaxSceneFileBytes, "a scene file"}, &bytes, error)) {
    EmptyDocument(doc);
    return false;
  }
  std::string problem;
  if (!DecodeDocument(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), doc, &problem))
    return SetError(error, path + ": " + problem);
  return true;
}

}  // namespace quillon::format
