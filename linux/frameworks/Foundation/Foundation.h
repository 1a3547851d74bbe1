// GNUstep's Foundation, with the declarations that Apple's has and GNUstep's lacks.
#pragma once

#include_next <Foundation/Foundation.h>
