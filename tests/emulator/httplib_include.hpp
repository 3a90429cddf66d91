#pragma once

// cpp-httplib, included as a system header: its own warnings must not fail our -Werror build.
// The library is the distribution's compiled one, so the CPPHTTPLIB_* switches come from its
// pkg-config file and must match it.
#pragma GCC system_header
#include <httplib.h>
