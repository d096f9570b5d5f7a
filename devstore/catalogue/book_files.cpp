#include "book_files.h"

#include <cstdio>
#include <vector>

#include "markup_text.h"
#include "zip_writer.h"

namespace devstore {

namespace {

// A name that every file system takes: no slashes, no control characters.
std::string safeName(const std::string &title) {
  std::string out;
  for (unsigned char c : title) out += (c < 0x20 || c == '/' || c == '\\' || c == ':' || c == '"') ? '_' : c;
  return out;
}

std::string chapter(const BookRecord &book, int number) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<html xmlns=\"http://www.w3.org/1999/xhtml\"><head><title>" +
         MarkupText::escape(book.title) + "</title></head><body><h1>Chapter " + std::to_string(number) + "</h1><p>" +
         MarkupText::escape(book.title) + " by " + MarkupText::escape(book.author) + ".</p></body></html>\n";
}

std::string packageDocument(const BookRecord &book, int chapters) {
  std::string manifest;
  std::string spine;
  for (int i = 1; i <= chapters; ++i) {
    const std::string id = "c" + std::to_string(i);
    manifest += "<item id=\"" + id + "\" href=\"" + id + ".xhtml\" media-type=\"application/xhtml+xml\"/>";
    spine += "<itemref idref=\"" + id + "\"/>";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<package xmlns=\"http://www.idpf.org/2007/opf\" version=\"3.0\" unique-identifier=\"id\">"
         "<metadata xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><dc:identifier id=\"id\">urn:isbn:" +
         book.isbn + "</dc:identifier><dc:title>" + MarkupText::escape(book.title) + "</dc:title><dc:creator>" +
         MarkupText::escape(book.author) + "</dc:creator><dc:language>" + book.language +
         "</dc:language><meta property=\"dcterms:modified\">2026-01-01T00:00:00Z</meta></metadata>"
         "<manifest><item id=\"nav\" href=\"nav.xhtml\" media-type=\"application/xhtml+xml\" properties=\"nav\"/>" +
         manifest + "</manifest><spine>" + spine + "</spine></package>\n";
}

std::string navigation(int chapters) {
  std::string items;
  for (int i = 1; i <= chapters; ++i) {
    items += "<li><a href=\"c" + std::to_string(i) + ".xhtml\">Chapter " + std::to_string(i) + "</a></li>";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" "
         "xmlns:epub=\"http://www.idpf.org/2007/ops\"><head><title>Contents</title></head><body>"
         "<nav epub:type=\"toc\"><ol>" +
         items + "</ol></nav></body></html>\n";
}

}  // namespace

std::string BookFiles::make(const BookRecord &book, bool sample) {
  if (book.format == "application/pdf") return pdf(book);
  if (book.format == "audio/mpeg") return mp3(sample ? 40 : 400);
  if (book.format == "application/zip") return audioZip(book);
  return epub(book, sample ? 1 : 5);
}

std::string BookFiles::fileName(const BookRecord &book, bool sample) {
  std::string extension = ".epub";
  if (book.format == "application/pdf") extension = ".pdf";
  if (book.format == "audio/mpeg") extension = ".mp3";
  if (book.format == "application/zip") extension = ".zip";
  return safeName(book.title) + (sample ? " (sample)" : "") + extension;
}

std::string BookFiles::acsmToken(const BookRecord &book, const std::string &downloadUrl) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<fulfillmentToken xmlns=\"urn:lumenpress:fulfilment\">"
         "<resource>urn:lumenpress:book:" +
         std::to_string(book.id) + "</resource><title>" + MarkupText::escape(book.title) + "</title><format>" +
         book.format + "</format><src>" + MarkupText::escape(downloadUrl) + "</src></fulfillmentToken>\n";
}

std::string BookFiles::epub(const BookRecord &book, int chapters) {
  ZipWriter zip;
  zip.add("mimetype", "application/epub+zip", false);
  zip.add("META-INF/container.xml",
          "<?xml version=\"1.0\"?>\n<container version=\"1.0\" "
          "xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\"><rootfiles><rootfile "
          "full-path=\"content.opf\" media-type=\"application/oebps-package+xml\"/></rootfiles></container>\n");
  zip.add("content.opf", packageDocument(book, chapters));
  zip.add("nav.xhtml", navigation(chapters));
  for (int i = 1; i <= chapters; ++i) zip.add("c" + std::to_string(i) + ".xhtml", chapter(book, i));
  return zip.finish();
}

// One page with the title on it; the cross-reference table needs each object's offset.
std::string BookFiles::pdf(const BookRecord &book) {
  std::string title;
  for (unsigned char c : book.title) title += (c < 0x80 && c != '(' && c != ')' && c != '\\') ? char(c) : '?';
  const std::string text = "BT /F1 24 Tf 72 720 Td (" + title + ") Tj ET";
  const std::vector<std::string> objects = {
      "<< /Type /Catalog /Pages 2 0 R >>",
      "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
      "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> >>",
      "<< /Length " + std::to_string(text.size()) + " >>\nstream\n" + text + "\nendstream",
      "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
  };
  std::string out = "%PDF-1.4\n";
  std::vector<size_t> offsets;
  for (size_t i = 0; i < objects.size(); ++i) {
    offsets.push_back(out.size());
    out += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const size_t table = out.size();
  out += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
  for (size_t offset : offsets) {
    char line[24];
    std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
    out += line;
  }
  return out + "trailer\n<< /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
         std::to_string(table) + "\n%%EOF\n";
}

// Silent MPEG-1 layer III frames, 128 kbit/s, 44.1 kHz, mono: about 26 ms each.
std::string BookFiles::mp3(int frames) {
  std::string frame(417, '\0');
  frame[0] = static_cast<char>(0xff);
  frame[1] = static_cast<char>(0xfb);
  frame[2] = static_cast<char>(0x90);
  frame[3] = static_cast<char>(0xc0);
  std::string out;
  out.reserve(frame.size() * frames);
  for (int i = 0; i < frames; ++i) out += frame;
  return out;
}

std::string BookFiles::audioZip(const BookRecord &book) {
  ZipWriter zip;
  for (int i = 1; i <= 3; ++i) zip.add(safeName(book.title) + " - " + std::to_string(i) + ".mp3", mp3(120));
  return zip.finish();
}

}  // namespace devstore
