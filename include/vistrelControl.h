#pragma once
// Everything an application needs: include this header only.
#include "absoluteVcPdu.h"
#include "vistrelControlPdu.h"
