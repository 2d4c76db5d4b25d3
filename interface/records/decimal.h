// What is done to Decimals besides reading and writing them.
#ifndef INTERFACE_RECORDS_DECIMAL_H_
#define INTERFACE_RECORDS_DECIMAL_H_

#include <string>

#include "encconv/records.h"

namespace encconv {

// Takes leading zeros off; "0" stays of nothing but them.
void stripZeros(std::string& digits);

// Gives the number another scale. False, with number unchanged, when digits would be lost.
bool rescale(Decimal& number, int scale);

}  // namespace encconv

#endif  // INTERFACE_RECORDS_DECIMAL_H_
