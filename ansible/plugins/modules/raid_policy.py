#!/usr/bin/python
# -*- coding: utf-8 -*-

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: raid_policy
short_description: Make a server's RAID layout what a policy file says, through its BMC
description:
  - Compares the server with the policy file (C(raidcfg diff)). When they match nothing is sent
    and the task is C(ok).
  - When volumes are only missing, they are created (C(raidcfg add)). When the controllers the
    policy names hold volumes the policy would have to remove or change, the task fails with the
    difference, unless I(replace) is set, which clears exactly those controllers and then adds.
  - I(state=absent) clears the controllers the policy names.
  - Check mode reports what would change and sends no write; C(--diff) shows the difference.
options:
  policy_file:
    description: "The policy file."
    type: path
    required: true
  state:
    description: "present or absent."
    type: str
    default: present
    choices: [present, absent]
  replace:
    description: "Clear the named controllers first when volumes are in the way."
    type: bool
    default: false
extends_documentation_fragment: [raidcfg.fleet.connection]
author: raidcfg developers
"""

RETURN = r"""
differences:
  description: What separated the server from the policy before the task (raidcfg diff --json).
  returned: always
  type: list
  elements: dict
"""

import os

from ansible.module_utils.basic import AnsibleModule

from ansible_collections.raidcfg.fleet.plugins.module_utils.raidcfg_runner import (
    CONNECTION_ARGS,
    RaidcfgRunner,
    controller_number,
    missing_part,
    named_controllers,
)

# Differences that add cannot settle: a volume that exists and is other than the policy says,
# one the policy does not name, and a global hot spare the policy does not name.
IN_THE_WAY = ("differs", "not_in_policy")


def in_the_way(difference):
    return difference["kind"] in IN_THE_WAY or (
        difference["kind"] == "hot_spares" and difference.get("extra"))


def difference_text(differences):
    return "".join("%s: %s: %s\n" % (d["section"], d["kind"], "; ".join(d["details"]))
                   for d in differences)


def clear(module, runner, controllers):
    for name in controllers:
        number = controller_number(name)
        if number is None:
            module.fail_json(msg="policy_file names '%s', which is no numbered controller "
                                 "(ctrlN) that can be cleared" % name)
        rc, stdout, stderr = runner.run(["clear", "--ctrl", str(number), "-y"])
        if rc != 0:
            runner.fail(rc, stdout, stderr, "clearing %s" % name)


def main():
    spec = dict(CONNECTION_ARGS)
    spec.update(policy_file=dict(type="path", required=True),
                state=dict(type="str", default="present", choices=["present", "absent"]),
                replace=dict(type="bool", default=False))
    module = AnsibleModule(argument_spec=spec, supports_check_mode=True)
    policy_file = module.params["policy_file"]
    if not os.path.isfile(policy_file):
        module.fail_json(msg="policy_file: '%s' is not a file" % policy_file)
    with open(policy_file, encoding="utf-8") as policy:
        policy_text = policy.read()
    controllers = named_controllers(policy_text)
    runner = RaidcfgRunner(module)
    compared = policy_file
    if module.params["state"] == "absent":
        # Nothing on the named controllers: every volume and spare there is a difference.
        compared = os.path.join(runner.scratch, "empty.ini")
        with open(compared, "w", encoding="utf-8") as empty:
            empty.write("".join("[%s]\nglobal_hot_spares=\n" % name for name in controllers))
    matches, document = runner.diff(compared)
    differences = document.get("differences", [])
    result = dict(changed=not matches, differences=differences)
    if module._diff and not matches:
        result["diff"] = {"prepared": difference_text(differences)}
    if matches or module.check_mode:
        runner.cleanup()
        module.exit_json(**result)
    if module.params["state"] == "absent":
        clear(module, runner, controllers)
    else:
        blocking = [d for d in differences if in_the_way(d)]
        if blocking and not module.params["replace"]:
            runner.cleanup()
            module.fail_json(msg="volumes are in the way of the policy (set replace: true to "
                                 "clear the controllers it names first):\n" +
                                 difference_text(blocking), differences=differences)
        to_apply = policy_file
        if blocking:
            clear(module, runner, controllers)
        else:
            to_apply = os.path.join(runner.scratch, "missing.ini")
            with open(to_apply, "w", encoding="utf-8") as missing:
                missing.write(missing_part(policy_text, differences))
        rc, stdout, stderr = runner.run(["add", "--file", to_apply, "-y"])
        if rc != 0:
            runner.fail(rc, stdout, stderr, "applying the policy")
    runner.cleanup()
    module.exit_json(**result)


if __name__ == "__main__":
    main()
