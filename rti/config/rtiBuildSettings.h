// How this RTI's headers are built: symbol export and the smart pointer that the
// factories return. Installed under the name every API header includes it by.
#ifndef RTI_SpecificConfig_h
#define RTI_SpecificConfig_h

#include <memory>

// Every class of the API is marked so that the library can be built with hidden
// visibility and still export exactly the API (type information included, so that
// exceptions thrown inside the RTI are caught by their type in the application).
// RTI_EXPORT_FEDTIME marks what the time library (libfedtime1516_64) exports.
#if defined(_WIN32)
#define RTI_EXPORT
#define RTI_EXPORT_FEDTIME
#else
#define RTI_EXPORT __attribute__((visibility("default")))
#define RTI_EXPORT_FEDTIME __attribute__((visibility("default")))
#endif

// The 2000 C++ API hands ownership back in std::auto_ptr, which C++17 removed. These
// headers return std::unique_ptr instead, under the name other RTIs built for C++17 use
// for it. Code that stores the result with `auto` (or moves it into its own smart
// pointer) compiles unchanged against either form.
#define RTI_UNIQUE_PTR std::unique_ptr

#endif
