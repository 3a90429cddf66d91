#!/usr/bin/python
# -*- coding: utf-8 -*-

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: raid_save
short_description: Save a server's RAID layout as a policy file on the control node
description:
  - Runs C(raidcfg save) against the server's BMC and writes the policy file to I(dest), to clone
    a reference server with M(raidcfg.fleet.raid_policy).
  - C(changed) only when the content differs from what I(dest) holds. Check mode writes nothing.
options:
  dest:
    description: "Where the policy file goes."
    type: path
    required: true
extends_documentation_fragment: [raidcfg.fleet.connection]
author: raidcfg developers
"""

RETURN = r"""
dest: {description: The policy file., returned: always, type: str}
"""

import os

from ansible.module_utils.basic import AnsibleModule

from ansible_collections.raidcfg.fleet.plugins.module_utils.raidcfg_runner import (
    CONNECTION_ARGS,
    RaidcfgRunner,
)


def main():
    spec = dict(CONNECTION_ARGS)
    spec["dest"] = dict(type="path", required=True)
    module = AnsibleModule(argument_spec=spec, supports_check_mode=True)
    dest = module.params["dest"]
    runner = RaidcfgRunner(module)
    text = runner.save()
    runner.cleanup()
    before = None
    if os.path.exists(dest):
        with open(dest, encoding="utf-8") as current:
            before = current.read()
    changed = before != text
    if changed and not module.check_mode:
        temporary = dest + ".tmp"
        with open(temporary, "w", encoding="utf-8") as out:
            out.write(text)
        os.replace(temporary, dest)
    result = dict(changed=changed, dest=dest)
    if module._diff:
        result["diff"] = {"before": before or "", "after": text,
                          "before_header": dest, "after_header": module.params["bmc"]}
    module.exit_json(**result)


if __name__ == "__main__":
    main()
