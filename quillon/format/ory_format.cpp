#include "quillon/format/ory_format.h"

#include <stdexcept>

#include "quillon/format/byte_reader.h"
#include "quillon/format/document_reader.h"
#include "quillon/format/document_writer.h"
#include "quillon/format/file_frame.h"
#include "quillon/format/format_versions.h"
#include "quillon/format/file_sink.h"
#include "quillon/format/file_source.h"
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
  doc.identity = NodeIdentity{};
}

// The first bytes of the file, up to a whole header: how many there were.
std::size_t ReadHeader(qae::files::InputFile& file, std::uint8_t* header) {
  std::size_t have = 0;
  for (std::size_t got = 1; have < kFrameHeaderBytes && got > 0; have += got) {
    std::string problem;
    if (!file.Read(header + have, kFrameHeaderBytes - have, &got, &problem)) throw FileReadFailed(problem);
  }
  return have;
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
    ByteReader r(data, size, kFrameHeaderBytes);
    ReadDocumentBody(r, doc, FormatVersionOf(data, size));
    return true;
  } catch (const FormatError& e) {
    EmptyDocument(doc);
    return SetError(error, e.what());
  } catch (const std::bad_alloc&) {
    EmptyDocument(doc);
    throw;
  }
}

// The encoder streams into the file through a buffer of bounded size; the frame's length and
// checksum, known only at the end, are written into the header last.
bool WriteDocument(const Document& doc, const std::string& path, std::string* error) {
  qae::files::FileReplacement file;
  if (!file.Begin(path, error)) return false;
  try {
    SceneFileSink sink(file);
    ByteWriter w;
    w.sink = &sink;
    BeginFrame(w);
    WriteDocumentBody(w, doc);
    w.Flush();
    SealFrame(w, sink.BodyChecksum());
  } catch (const FileWriteFailed&) {
    // Commit names the reason the system gave.
  } catch (const std::bad_alloc&) {
    throw;  // the caller knows what it was writing for
  } catch (const std::exception& e) {
    return SetError(error, path + ": " + e.what());
  }
  return file.Commit(error);
}

// The body is decoded as it is read through a buffer of bounded size, and its checksum kept
// on the way. A file that is damaged is named so even when the damage first shows as a
// record that cannot be decoded: the checksum is looked at before the record's own problem.
bool ReadDocument(const std::string& path, Document& doc, std::string* error) {
  EmptyDocument(doc);
  qae::files::InputFile file;
  if (!file.Open(path, {kMaxSceneFileBytes, "a scene file"}, error)) return false;
  try {
    std::uint8_t header[kFrameHeaderBytes] = {};
    const std::size_t got = ReadHeader(file, header);
    const std::uint32_t checksum = CheckFrameHeader(header, got < kFrameHeaderBytes ? got : file.Size());
    SceneFileSource source(file);
    ByteReader r(source, file.Size(), kFrameHeaderBytes);
    try {
      ReadDocumentBody(r, doc, FormatVersionOf(header, kFrameHeaderBytes));
    } catch (const FormatError&) {
      source.ReadToEnd();
      CheckBodyChecksum(checksum, source.BodyChecksum());
      throw;
    }
    CheckBodyChecksum(checksum, source.BodyChecksum());
    return true;
  } catch (const FormatError& e) {
    EmptyDocument(doc);
    return SetError(error, path + ": " + e.what());
  } catch (const FileReadFailed& e) {
    EmptyDocument(doc);
    return SetError(error, e.what());
  } catch (const std::bad_alloc&) {
    EmptyDocument(doc);
    throw;
  }
}

}  // namespace quillon::format
