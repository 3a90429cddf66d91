#pragma once

// Marks the few symbols the shared service library exports; everything else stays hidden so
// that a host tool can only reach the service through its facade and result values.
#define RAIDCFG_EXPORT __attribute__((visibility("default")))
