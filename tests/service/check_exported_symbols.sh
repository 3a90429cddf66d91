#!/usr/bin/env bash
# Fails when the shared service library exports anything beyond its facade, the result values it
# hands back, and the log, simulated machine and Redfish set-up a host needs. Standard library and compiler symbols that the
# toolchain emits as weak or unique (template instances, typeinfo) are not ours and pass.
set -euo pipefail
lib="$1"
allowed='^(service::ServiceRaid::|TesselResult::|operator<<\(std::basic_ostream<char, std::char_traits<char> >&, TesselResult const&\)|result::GetResultMessage(\[abi:cxx11\])?\(|Quillon::Log::|Quillon::GetLogDir\(|Quillon::GetLogFileName(\[abi:cxx11\])?\(|Quillon::SetLogDir\(|sim::SimulatedMachine::Use\(|redfish::RedfishBackends::Use\(|redfish::RedfishBackends::Failure(\[abi:cxx11\])?\(|typeinfo (name )?for Quillon::Log|vtable for Quillon::Log|_init$|_fini$|_edata$|_end$|__bss_start$)'
bad=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TDBR]$/ {print $3}' | c++filt | grep -Ev "$allowed" || true)
if [ -n "$bad" ]; then
    echo "unexpected exported symbols in $lib:"
    echo "$bad"
    exit 1
fi
count=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TDBR]$/' | c++filt | grep -c 'service::ServiceRaid::' || true)
if [ "$count" -lt 4 ]; then
    echo "the facade is not exported from $lib"
    exit 1
fi
echo "exported symbols of $lib are the facade, its results and the log set-up"
