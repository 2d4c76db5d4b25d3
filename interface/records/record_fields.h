// What reading and writing the fields of records share.
#ifndef INTERFACE_RECORDS_RECORD_FIELDS_H_
#define INTERFACE_RECORDS_RECORD_FIELDS_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/records.h"

namespace encconv {

inline constexpr int kFieldText = 65001;  // the encoding of values

// The fields of a layout with what serves each of them; one that reads or writes a record at a
// time.
struct RecordFields {
  struct Served {
    Field field;
    std::size_t begin;  // in the record
    RecordText* text;   // of text fields; one of texts
    bool isAscii;       // of zoned fields
  };

  // isReading: the fields' texts are converted from their encodings, otherwise to them. The texts
  // tell their problems to onText().
  RecordFields(FieldLayout layout, const FieldOptions& options, bool isReading);
  RecordFields(const RecordFields&) = delete;
  RecordFields& operator=(const RecordFields&) = delete;

  // Tells of a problem with the present field.
  void tell(RecordProblemKind kind, std::uint64_t offset, std::string_view bytes,
            std::string reason);
  void tellText(const Problem& problem);

  FieldOptions options;
  std::string error;  // why the fields cannot be served; empty when they can be
  std::vector<Served> fields;
  std::string blank;  // of the record
  bool stops;         // at the first problem
  std::function<void(const RecordProblem&)> handler;
  const Served* present = nullptr;
  std::uint64_t textOffset = 0;  // what is added to the offsets of problems of text

 private:
  RecordText* textFor(int codePage, bool isReading, const std::string& name);

  struct KnownText {
    int codePage;
    RecordText text;
  };
  std::vector<std::unique_ptr<KnownText>> m_texts;
};

}  // namespace encconv

#endif  // INTERFACE_RECORDS_RECORD_FIELDS_H_
