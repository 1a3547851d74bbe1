// The part of the Security framework that the program meets.
#pragma once

#include <Security/Authorization.h>
#include <Security/SecBase.h>
#include <Security/SecItem.h>
