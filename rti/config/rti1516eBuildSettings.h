// How this RTI's IEEE 1516-2010 headers are built: symbol export, the smart pointer the
// factories return, and the exception-list macros that C++17 no longer allows to expand.
#ifndef RTI_SpecificConfig_h
#define RTI_SpecificConfig_h

#include <memory>

// Every class of the API is exported (type information included) so that exceptions
// thrown inside the library are caught by their type in the application, while the
// library itself is built with hidden visibility.
#if defined(_WIN32)
#define RTI_EXPORT
#define RTI_EXPORT_FEDTIME
#else
#define RTI_EXPORT __attribute__((visibility("default")))
#define RTI_EXPORT_FEDTIME __attribute__((visibility("default")))
#endif

// C++17 removed dynamic exception lists and std::auto_ptr: RTI_THROW expands to nothing,
// so that applications declaring their own data elements with it still compile.
#define RTI_NOEXCEPT noexcept
#define RTI_THROW(e)
#define RTI_UNIQUE_PTR std::unique_ptr

#endif
