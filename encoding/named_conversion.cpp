// Conversion by charset name, with a byte order mark, and to and from the platform's code pages.
#include "encoding/encoding_convert.h"
#include "support/charset_naming.h"
#include "support/psdk.h"

namespace {

constexpr int kUtf8 = 65001;

int codePageOrUtf8(const StringBuffer& name) {
  const int codePage = CharsetNaming::GetCodePage(name, nullptr);
  return codePage != 0 ? codePage : kUtf8;
}

}  // namespace

bool EncodingConvert::EncConvertWithPreamble(int fromCodePage, int toCodePage,
                                             const unsigned char* data, unsigned int length,
                                             DataBuffer& out, LogBase& log) {
  if (toCodePage == 0) toCodePage = fromCodePage;
  m_foundErrors = false;
  const EncodingRow* const row = findEncodingRow(toCodePage);
  if (row != nullptr && row->form != EncodingForm::kUtf32) {  // which gets none here
    const std::string_view mark = markOf(*row);
    out.append(mark.data(), static_cast<unsigned int>(mark.size()));
  }
  return EncConvert(fromCodePage, toCodePage, data, length, out, log) && !out.hasFailed();
}

bool EncodingConvert::ChConvert(const StringBuffer& fromCharset, const StringBuffer& toCharset,
                                const unsigned char* data, unsigned int length, DataBuffer& out,
                                LogBase& log, bool /*ignored*/) {
  m_pivotFromUtf16 = m_foundErrors = false;
  const int from = CharsetNaming::GetCodePage(fromCharset, nullptr);
  if (from == 0) return false;
  const int to = CharsetNaming::GetCodePage(toCharset, nullptr);
  if (to == 0) return false;
  return EncConvert(from, to, data, length, out, log);
}

bool EncodingConvert::ChConvert2(const StringBuffer& fromCharset, int toCodePage,
                                 const unsigned char* data, unsigned int length, DataBuffer& out,
                                 LogBase& log) {
  m_pivotFromUtf16 = m_foundErrors = false;
  int from = CharsetNaming::GetCodePage(fromCharset, nullptr);
  if (from == 0) {
    log.LogError("Unrecognized fromCharset");
    log.LogDataSb("charsetName", fromCharset);
    from = kUtf8;
  }
  return EncConvert(from, toCodePage, data, length, out, log);
}

bool EncodingConvert::ChConvert2p(const char* fromCharset, int toCodePage,
                                  const unsigned char* data, unsigned int length, DataBuffer& out,
                                  LogBase& log) {
  StringBuffer name;
  name.append(fromCharset);
  return ChConvert2(name, toCodePage, data, length, out, log);
}

bool EncodingConvert::ChConvert3(int fromCodePage, const StringBuffer& toCharset,
                                 const unsigned char* data, unsigned int length, DataBuffer& out,
                                 LogBase& log) {
  m_pivotFromUtf16 = m_foundErrors = false;
  return EncConvert(fromCodePage, codePageOrUtf8(toCharset), data, length, out, log);
}

bool EncodingConvert::ChConvert3p(int fromCodePage, const char* toCharset,
                                  const unsigned char* data, unsigned int length, DataBuffer& out,
                                  LogBase& log) {
  StringBuffer name;
  name.append(toCharset);
  return ChConvert3(fromCodePage, name, data, length, out, log);
}

bool EncodingConvert::ChConvert3_withPreamble(int fromCodePage, const StringBuffer& toCharset,
                                              const unsigned char* data, unsigned int length,
                                              DataBuffer& out, LogBase& log) {
  m_pivotFromUtf16 = m_foundErrors = false;
  return EncConvertWithPreamble(fromCodePage, codePageOrUtf8(toCharset), data, length, out, log);
}

bool EncodingConvert::AnsiToMultiByte(int codePage, const char* text, int length, DataBuffer& out,
                                      LogBase& log) {
  return length >= 0 &&
         EncConvert(Psdk::getAnsiCodePage(), codePage, reinterpret_cast<const unsigned char*>(text),
                    static_cast<unsigned int>(length), out, log);
}

bool EncodingConvert::MultiByteToAnsi(int codePage, const unsigned char* data, int length,
                                      DataBuffer& out, LogBase& log) {
  return length >= 0 && EncConvert(codePage, Psdk::getAnsiCodePage(), data,
                                   static_cast<unsigned int>(length), out, log);
}

bool EncodingConvert::OemToMultiByte(int codePage, const char* text, int length, DataBuffer& out,
                                     LogBase& log) {
  return length >= 0 &&
         EncConvert(Psdk::getOemCodePage(), codePage, reinterpret_cast<const unsigned char*>(text),
                    static_cast<unsigned int>(length), out, log);
}

bool EncodingConvert::MultiByteToOem(int codePage, const unsigned char* data, int length,
                                     DataBuffer& out, LogBase& log) {
  return length >= 0 && EncConvert(codePage, Psdk::getOemCodePage(), data,
                                   static_cast<unsigned int>(length), out, log);
}
