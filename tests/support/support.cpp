// The test support library's header-only helpers live in wireBytes.h and
// outputCapture.h; this unit gives the library an object file of its own.
#include "outputCapture.h"
#include "wireBytes.h"
