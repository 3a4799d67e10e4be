#pragma once
// Everything is built with hidden visibility; only declarations carrying this macro form
// the interface that applications link against.
#define DT_EXPORT __attribute__((visibility("default")))
