#!/usr/bin/python
# -*- coding: utf-8 -*-

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: raid_facts
short_description: The RAID controllers, disks, volumes and hot spares of a server, read through its BMC
description:
  - Runs C(raidcfg show) against the server's BMC and returns what C(raid_show_result.xml) holds.
  - Changes nothing; supports check mode.
extends_documentation_fragment: [raidcfg.fleet.connection]
author: raidcfg developers
"""

RETURN = r"""
raid_controllers:
  description: One entry per controller, its own fields and its disks, volumes and hot spares.
  returned: success
  type: list
  elements: dict
"""

from ansible.module_utils.basic import AnsibleModule

from ansible_collections.raidcfg.fleet.plugins.module_utils.raidcfg_runner import (
    CONNECTION_ARGS,
    RaidcfgRunner,
)


def main():
    module = AnsibleModule(argument_spec=dict(CONNECTION_ARGS), supports_check_mode=True)
    runner = RaidcfgRunner(module)
    try:
        controllers = runner.show()
    except Exception as error:  # an unreadable answer is a failed task, never a traceback
        runner.cleanup()
        module.fail_json(msg="reading the server failed: %s" % error)
    runner.cleanup()
    module.exit_json(changed=False, raid_controllers=controllers,
                     ansible_facts={"raid_controllers": controllers})


if __name__ == "__main__":
    main()
