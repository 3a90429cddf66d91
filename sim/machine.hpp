#pragma once

#include "model/machine.hpp"

// The simulated machine is described by the shared controller model; its backends, store and
// file format name the model's types as their own.
namespace sim {

using model::Bmc;
using model::Connector;
using model::Controller;
using model::Disk;
using model::Fault;
using model::kNotReported;
using model::Machine;
using model::Volume;

} // namespace sim
