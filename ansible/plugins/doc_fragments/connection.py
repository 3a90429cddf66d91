# -*- coding: utf-8 -*-
# The options every raidcfg.fleet module takes to reach a server's BMC.

from __future__ import absolute_import, division, print_function

__metaclass__ = type


class ModuleDocFragment(object):
    DOCUMENTATION = r"""
options:
  bmc:
    description: "The BMC, HOST[:PORT]."
    type: str
    required: true
  user:
    description: "The BMC user."
    type: str
    required: true
  password:
    description: "The BMC password; handed to raidcfg in its environment."
    type: str
    required: true
  http:
    description: "Plain HTTP (emulators on loopback)."
    type: bool
    default: false
  validate_certs:
    description: "Verify the BMC's TLS certificate."
    type: bool
    default: true
  ca_path:
    description: "A PEM file of certificates to trust for the BMC."
    type: path
  timeout:
    description: "Seconds per request to the BMC."
    type: int
  cfc:
    description: "The server is a CFC system."
    type: bool
    default: false
  raidcfg_path:
    description: "The raidcfg program."
    type: str
    default: raidcfg
"""
