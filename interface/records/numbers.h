// Numbers as fields of records hold them.
#ifndef INTERFACE_RECORDS_NUMBERS_H_
#define INTERFACE_RECORDS_NUMBERS_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "encconv/records.h"

namespace encconv {

// The digits that a number field of this type and length has room for; of binary none is counted.
std::size_t digitRoom(const Field& field);

// The bytes of the whole field as a number. isAscii: zoned digits are 30 to 39. False, with the
// reason in why, when they are none.
bool readNumber(const Field& field, bool isAscii, std::string_view bytes, Decimal& number,
                std::string& why);

// Writes number over the whole field at bytes. False, with the reason in why and nothing done, when
// the field cannot hold it.
bool writeNumber(const Field& field, bool isAscii, Decimal number, char* bytes, std::string& why);

}  // namespace encconv

#endif  // INTERFACE_RECORDS_NUMBERS_H_
