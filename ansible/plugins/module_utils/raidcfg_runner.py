# -*- coding: utf-8 -*-
# The part every raidcfg.fleet module shares: the connection options, the raidcfg command line
# built from them, and running it with the password in the environment, never in argv.

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import shutil
import tempfile
import xml.etree.ElementTree as ElementTree

# The options every module takes (scripts outside the repository use these names).
CONNECTION_ARGS = dict(
    bmc=dict(type="str", required=True),
    user=dict(type="str", required=True),
    password=dict(type="str", required=True, no_log=True),
    http=dict(type="bool", default=False),
    validate_certs=dict(type="bool", default=True),
    ca_path=dict(type="path"),
    timeout=dict(type="int"),
    cfc=dict(type="bool", default=False),
    raidcfg_path=dict(type="str", default="raidcfg"),
)

# raidcfg diff's exit status when the server differs from the policy file.
DIFFERS = 3


def connection_args(params):
    """The raidcfg options that reach the BMC, from the module's parameters (no password)."""
    args = ["--bmc", params["bmc"], "--user", params["user"]]
    if params.get("http"):
        args.append("--http")
    elif not params.get("validate_certs", True):
        args.append("--insecure")
    elif params.get("ca_path"):
        args.extend(["--cacert", params["ca_path"]])
    if params.get("timeout") is not None:
        if params["timeout"] < 1:
            raise ValueError("timeout must be a positive number of seconds, got %d" % params["timeout"])
        args.extend(["--timeout", str(params["timeout"])])
    if params.get("cfc"):
        args.append("--cfc")
    return args


def result_line(stdout):
    """raidcfg's last line, "CODE MESSAGE"."""
    lines = [line for line in (stdout or "").splitlines() if line.strip()]
    return lines[-1] if lines else ""


class RaidcfgRunner:
    """Runs raidcfg for one module call, each run in a scratch directory of its own."""

    def __init__(self, module):
        self.module = module
        self.params = module.params
        self.scratch = tempfile.mkdtemp(prefix="raidcfg-fleet-")

    def cleanup(self):
        shutil.rmtree(self.scratch, ignore_errors=True)

    def command(self, action_args):
        program = self.params["raidcfg_path"]
        found = program if os.path.sep in program else shutil.which(program)
        if not found:
            self.module.fail_json(msg="raidcfg_path: '%s' is not a program on this host" % program)
        return [found] + list(action_args) + connection_args(self.params) + [
            "--output", self.scratch, "-q"]

    def run(self, action_args):
        """(rc, stdout, stderr) of raidcfg; the password goes through RAIDCFG_BMC_PASSWORD."""
        return self.module.run_command(
            self.command(action_args),
            environ_update={"RAIDCFG_BMC_PASSWORD": self.params["password"]},
            cwd=self.scratch)

    def fail(self, rc, stdout, stderr, what):
        """A failed task with raidcfg's code and message."""
        message = result_line(stdout)
        reasons = [line for line in (stderr or "").splitlines() if line.strip()]
        text = "%s failed: %s" % (what, message or "raidcfg exited with %d" % rc)
        if reasons:
            text += " (" + "; ".join(reasons) + ")"
        self.cleanup()
        self.module.fail_json(msg=text, rc=rc, raidcfg_result=message)

    def diff(self, policy_file):
        """The difference of the server from the policy file: (matches, document)."""
        rc, stdout, stderr = self.run(["diff", "--file", policy_file, "--json"])
        if rc not in (0, DIFFERS):
            self.fail(rc, stdout, stderr, "reading the server")
        try:
            document = json.loads(stdout)
        except ValueError:
            self.fail(rc, stdout, stderr, "reading raidcfg diff's answer")
        return rc == 0, document

    def save(self):
        """The server's configuration as a policy file text."""
        path = os.path.join(self.scratch, "live.ini")
        rc, stdout, stderr = self.run(["save", "--file", path])
        if rc != 0:
            self.fail(rc, stdout, stderr, "saving the configuration")
        with open(path, encoding="utf-8") as saved:
            return saved.read()

    def show(self):
        """The controllers of raid_show_result.xml, as facts."""
        rc, stdout, stderr = self.run(["show"])
        if rc != 0:
            self.fail(rc, stdout, stderr, "reading the server")
        return controllers_of(os.path.join(self.scratch, "raid_show_result.xml"))


def _element(node):
    """An element as a dict: its text leaves as strings, repeated children as lists."""
    if len(node) == 0:
        return (node.text or "").strip()
    out = {}
    for child in node:
        value = _element(child)
        if child.tag in out:
            if not isinstance(out[child.tag], list):
                out[child.tag] = [out[child.tag]]
            out[child.tag].append(value)
        else:
            out[child.tag] = value
    return out


def controllers_of(path):
    """raid_controllers: one entry per controller with its disks, volumes and hot spares."""
    root = ElementTree.parse(path).getroot()
    controllers = []
    for node in root.iter("CONTROLLER"):
        entry = {key: value for key, value in _element(node).items() if not isinstance(value, (dict, list))}
        disks = []
        seen = set()
        for disk in node.iter("DISK"):
            record = _element(disk)
            if not isinstance(record, dict):
                continue
            key = record.get("DiskID") or record.get("SlotNo") or json.dumps(record, sort_keys=True)
            if key in seen:
                continue
            seen.add(key)
            disks.append(record)
        volumes = [_element(volume) for volume in node.iter("VOLUME")]
        entry["disks"] = disks
        entry["volumes"] = [volume for volume in volumes if isinstance(volume, dict)]
        entry["hot_spares"] = [
            {"disk": disk.get("DiskID", disk.get("SlotNo", "")),
             "type": "global" if disk.get("State") == "GHS" else "dedicated"}
            for disk in disks if disk.get("State") in ("GHS", "DHS")]
        controllers.append(entry)
    return controllers


def named_controllers(policy_text):
    """The controller sections a policy file names, in file order: "ctrl1" of "[ctrl1-vol0]"."""
    names = []
    for line in policy_text.splitlines():
        line = line.strip()
        if line.startswith("[") and line.endswith("]"):
            name = line[1:-1].strip().split("-vol")[0]
            if name not in names:
                names.append(name)
    return names


def policy_blocks(policy_text):
    """The sections of a policy file as (name, lines of the section), in file order."""
    blocks = []
    for line in policy_text.splitlines():
        stripped = line.strip()
        if stripped.startswith("[") and stripped.endswith("]"):
            blocks.append((stripped[1:-1].strip(), [line]))
        elif blocks:
            blocks[-1][1].append(line)
    return blocks


def missing_part(policy_text, differences):
    """The part of a policy that add must still carry out: the volumes to create, and the
    global hot spares the server lacks; what already stands is left out, since add would try
    to create it again."""
    create = set(d["section"] for d in differences if d["kind"] == "create")
    spares = dict((d["section"], d.get("missing", [])) for d in differences
                  if d["kind"] == "hot_spares" and d.get("missing"))
    out = []
    for name, lines in policy_blocks(policy_text):
        if name in create:
            out.extend(lines)
        elif name in spares:
            out.append("[%s]" % name)
            out.append("    global_hot_spares=%s" % ",".join(spares[name]))
    return "\n".join(out) + "\n"


def controller_number(name):
    """1 for "ctrl1"; None for a section that names no numbered controller."""
    if name.startswith("ctrl") and name[4:].isdigit():
        return int(name[4:])
    return None
