// Functions defined each in a file that includes exactly one API header, as code written
// against the 2000 C++ API may: each header must compile on its own and bring in what
// the API says it does.
#ifndef VC_TEST_STANDARD_API_SINGLE_HEADERS_H
#define VC_TEST_STANDARD_API_SINGLE_HEADERS_H

#include <string>

int onlyEnumsBestEffort();
std::wstring onlyExceptionThrowAndCatch();
std::wstring onlyHandleEncodeIntoNothing();
unsigned long onlyRangeBoundsUpper();
unsigned long onlyVariableLengthDataSize();
unsigned long onlyTypedefsSetSize();
bool onlyLogicalTimeFactoryDefault();
double onlyFloat64TimeSum();
bool onlyNullFederateAmbassadorMade();
std::wstring onlyRti1516Name();

#endif
