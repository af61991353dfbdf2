// A value as text: in the short form that value2Chars gives, and in the form that goes on the wire.
#ifndef CIMCLIENT_VALUETEXT_H
#define CIMCLIENT_VALUETEXT_H

#include <CimClientLib/cmci.h>

#include <string>

namespace cimclient {

// Integers and reals: bare in the text of a path, and numeric keys.
bool isNumber(CMPIType type);

// What value2Chars gives: reals with six digits, "NULL" for a missing text, nothing for types
// without a text. The state is not looked at.
std::string valueText(const CMPIData& data);

// Appends the text of a simple value (DSP0201, 5.2.4.1): reals with as many digits as bring the
// same number back, char16 as its UTF-8 character, nothing for a missing text.
void appendWireText(std::string& out, const CMPIData& data);

} // namespace cimclient

#endif
