#!/usr/bin/env python3
"""Judges what raidcfg did against a recorded Redfish tree (DMTF's mockup layout); interop.sh
runs raidcfg and the emulator, this reads the tree itself and the files those runs left.

  interop_check.py plan MOCKUP_DIR
      the write checks for this tree, one a line: NAME <tab> PREPARATION <tab> ARGUMENTS
      (PREPARATION is "-" or the raidcfg arguments of a write that frees a disk first)
  interop_check.py verify MOCKUP_DIR NAME GROUP_DIR
      one line per check, "interop: MOCKUP: CHECK: ok" or "...: FAILED: reason"

A run directory (GROUP_DIR/show, .../save, .../prep, .../run, .../after) holds stdout, stderr,
rc, requests.log (the emulator's lines for that run alone) and out/ (raidcfg's --output).
"""

import json
import os
import re
import sys
import urllib.parse
import xml.etree.ElementTree as ElementTree

ROOT = "/redfish/v1"


# ---- the recorded tree -------------------------------------------------------------------------


class Tree:
    """The mockup as files: each URI below /redfish/v1 is a folder holding index.json."""

    def __init__(self, folder):
        self.folder = folder
        nested = os.path.join(folder, "redfish", "v1")
        self.base = nested if os.path.isdir(os.path.join(folder, "redfish")) else folder
        self.cache = {}

    def get(self, uri):
        path = urllib.parse.unquote(uri.split("#", 1)[0].split("?", 1)[0]).rstrip("/")
        if path != ROOT and not path.startswith(ROOT + "/"):
            return None
        if path not in self.cache:
            relative = path[len(ROOT):].strip("/")
            file = os.path.join(self.base, *relative.split("/"), "index.json") if relative else \
                os.path.join(self.base, "index.json")
            try:
                with open(file, encoding="utf-8") as stream:
                    loaded = json.load(stream)
                self.cache[path] = loaded if isinstance(loaded, dict) else None
            except (OSError, ValueError):
                self.cache[path] = None
        return self.cache[path]


def link(value):
    return value.get("@odata.id", "") if isinstance(value, dict) else ""


def clean(uri):
    """A URI as compared: no query, no fragment, no trailing slash."""
    return uri.split("#", 1)[0].split("?", 1)[0].rstrip("/") or "/"


def under(uri, folder):
    return clean(uri).startswith(clean(folder) + "/")


def references(tree, owner, key):
    """The resources a property names: an inline array of references, or a linked collection's
    Members. A reference that cannot be read comes back as None."""
    value = owner.get(key)
    if isinstance(value, dict) and "@odata.id" in value:
        collection = tree.get(value["@odata.id"]) or {}
        value = collection.get("Members", [])
    if not isinstance(value, list):
        return []
    return [(link(item), tree.get(link(item)) if link(item) else None) for item in value]


def whole_number(text):
    return isinstance(text, str) and re.fullmatch(r"[0-9]+", text) is not None \
        and int(text) < 2 ** 31


def oem_id(resource):
    value = ((resource.get("Oem") or {}).get("Raidcfg") or {}).get("Id")
    return value if isinstance(value, int) and not isinstance(value, bool) else None


def drive_links(volume):
    return [link(item) for item in (volume.get("Links") or {}).get("Drives", []) or []]


def is_pass_through(volume):
    """A RAIDType "None" volume over exactly one drive is that drive made JBOD."""
    return volume.get("RAIDType") == "None" and len(drive_links(volume)) == 1


def level_of(volume):
    raid_type = volume.get("RAIDType")
    return raid_type if isinstance(raid_type, str) and raid_type.startswith("RAID") else ""


class Drive:
    def __init__(self, uri, resource, number):
        self.uri = uri
        self.resource = resource
        self.id = number
        self.model = resource.get("Model") or ""
        self.name = resource.get("Name") or ""
        self.serial = resource.get("SerialNumber") or ""
        self.spare = resource.get("HotspareType") in ("Global", "Dedicated")
        self.global_spare = resource.get("HotspareType") == "Global"
        self.volumes = []  # the own volumes that name this drive
        self.state = ""


class Volume:
    def __init__(self, uri, resource):
        self.uri = uri
        self.resource = resource
        self.name = resource.get("DisplayName", resource.get("Name") or "")
        self.level = level_of(resource)
        self.pass_through = is_pass_through(resource)
        self.drives = drive_links(resource)
        self.id = None


class Controller:
    """One Storage resource: raidcfg shows it as one controller."""

    def __init__(self, tree, number, uri, storage):
        self.number = number
        self.uri = uri
        self.storage = storage
        self.volumes_link = link(storage.get("Volumes"))
        first = {}
        inline = storage.get("StorageControllers")
        if isinstance(inline, list) and inline and isinstance(inline[0], dict):
            first = inline[0]
        else:
            controllers = references(tree, storage, "Controllers")
            if controllers and controllers[0][1]:
                first = controllers[0][1]
        self.first = first

        # A volume reached through this Storage's link but living under another one is that
        # one's: it must be shown there alone.
        self.volumes = [Volume(volume_uri, resource)
                        for volume_uri, resource in references(tree, storage, "Volumes")
                        if resource is not None and under(volume_uri, uri)]
        position = 0
        for volume in self.volumes:
            if volume.pass_through:
                continue
            own = oem_id(volume.resource)
            if own is not None:
                volume.id = own
            elif whole_number(volume.resource.get("Id")):
                volume.id = int(volume.resource["Id"])
            else:
                volume.id = position
            position += 1

        self.drives = []
        for place, (drive_uri, resource) in enumerate(references(tree, storage, "Drives")):
            if resource is None:  # not in the recording: the emulator cannot serve it either
                continue
            if (resource.get("Status") or {}).get("State") == "Absent":
                continue
            own = oem_id(resource)
            if own is None and whole_number(resource.get("Id")):
                own = int(resource["Id"])
            self.drives.append(Drive(drive_uri, resource, place if own is None else own))
        by_uri = {clean(drive.uri): drive for drive in self.drives}
        for volume in self.volumes:
            for drive_uri in volume.drives:
                if clean(drive_uri) in by_uri:
                    by_uri[clean(drive_uri)].volumes.append(volume)
        for drive in self.drives:
            drive.state = expected_state(drive)

        actions = storage.get("Actions") or {}
        reset = actions.get("#Storage.ResetToDefaults")
        self.reset_target = ""
        if isinstance(reset, dict):
            self.reset_target = reset.get("target") or uri + "/Actions/Storage.ResetToDefaults"

    def offers_jbod(self):
        types = self.first.get("SupportedRAIDTypes")
        return not isinstance(types, list) or "None" in types

    def raid_volumes(self):
        return [volume for volume in self.volumes if not volume.pass_through]

    def names(self):
        return {text for text in (self.first.get("Model"), self.first.get("Name")) if text}


def expected_state(drive):
    """The state a client tells from standard properties alone."""
    if drive.resource.get("HotspareType") == "Global":
        return "GHS"
    if drive.resource.get("HotspareType") == "Dedicated":
        return "DHS"
    if drive.volumes:
        return "JBOD" if drive.volumes[0].pass_through else "Online"
    status = drive.resource.get("Status") or {}
    if status.get("State") == "UnavailableOffline":
        return "Offline"
    if status.get("Health") == "Critical":
        return "Failed"
    return "UGood"


class Machine:
    def __init__(self, folder):
        self.tree = Tree(folder)
        self.root = self.tree.get(ROOT)
        if self.root is None:
            raise ValueError("no readable service root (index.json)")
        sessions = link((self.root.get("Links") or {}).get("Sessions"))
        self.sessions = clean(sessions or ROOT + "/SessionService/Sessions")
        self.controllers = []
        for system_uri, system in references(self.tree, self.root, "Systems"):
            if system is None:
                continue
            for storage_uri, storage in references(self.tree, system, "Storage"):
                if storage is None:
                    continue
                self.controllers.append(
                    Controller(self.tree, len(self.controllers) + 1, storage_uri, storage))

    def all_volume_drives(self):
        linked = set()
        for controller in self.controllers:
            for volume in controller.volumes:
                linked.update(clean(uri) for uri in volume.drives)
        return linked


# ---- what raidcfg printed ----------------------------------------------------------------------


def read_text(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as stream:
            return stream.read()
    except OSError:
        return None


def tables(text):
    """Every table of a report: (title, rows as dicts), cut at the columns of the dash line."""
    lines = text.splitlines()
    found = []
    for index in range(1, len(lines)):
        rule = lines[index]
        if not rule.strip() or set(rule) - {"-", " "}:
            continue
        starts = [match.start() for match in re.finditer(r"-+", rule)]
        bounds = list(zip(starts, starts[1:] + [None]))

        def cut(line, bounds=bounds):
            return [line[begin:end].strip() if end else line[begin:].strip()
                    for begin, end in bounds]

        columns = cut(lines[index - 1])
        title = lines[index - 2].strip() if index >= 2 else ""
        rows = []
        row = index + 1
        while row < len(lines) and lines[row].strip():
            rows.append(dict(zip(columns, cut(lines[row]))))
            row += 1
        found.append((title, rows))
    return found


def shown_from_stdout(text):
    """Controllers as the show tables list them: id, product, serial, disks, volumes."""
    controllers = []
    current = None
    level = None
    for title, rows in tables(text):
        if title.endswith("Controller Information"):
            for row in rows:
                current = {"id": row.get("Controller ID", ""), "product": row.get("Product Name"),
                           "serial": row.get("Serial No"), "disks": [], "volumes": []}
                controllers.append(current)
        elif title == "Show Configuration Result":
            break
        elif current is None:
            continue
        elif title == "Disk Information":
            current["disks"] += [{"id": row.get("Disk ID", ""),
                                  "product": row.get("Product Name", ""),
                                  "state": row.get("State", ""),
                                  "serial": row.get("Serial No", "")} for row in rows]
        elif title == "Pool Information":
            level = rows[0].get("RAID State", "") if rows else None
        elif title == "Volume Information":
            current["volumes"] += [{"id": row.get("Volume ID", ""), "name": row.get("Name", ""),
                                    "level": level} for row in rows]
    return controllers


def shown_from_xml(path):
    root = ElementTree.parse(path).getroot()
    controllers = []
    for node in root.findall("CONTROLLER"):
        shown = {"id": (node.findtext("ControllerID") or "").strip(),
                 "product": node.findtext("ProductName") or "", "serial": None,
                 "disks": [], "volumes": []}
        disks = node.findall("DISKS/DISK")
        for pool in node.findall("POOLS/POOL"):
            disks += pool.findall("DISKS/DISK")
            level = pool.findtext("RAIDState") or ""
            for volume in pool.findall("VOLUMES/VOLUME"):
                shown["volumes"].append({"id": (volume.findtext("VolumeID") or "").strip(),
                                         "name": volume.findtext("Name") or "", "level": level})
        for disk in disks:
            shown["disks"].append({"id": (disk.findtext("DiskID") or "").strip(),
                                   "product": disk.findtext("ProductName") or "",
                                   "state": disk.findtext("State") or "",
                                   "serial": disk.findtext("SerialNo") or ""})
        controllers.append(shown)
    return controllers


def compare(machine, shown, source):
    """What differs between the tree and one rendering of it (stdout tables or the XML)."""
    problems = []
    if len(shown) != len(machine.controllers):
        problems.append(f"{source}: {len(shown)} controllers shown, the tree has "
                        f"{len(machine.controllers)} Storage resources")
    for controller in machine.controllers:
        listed = [item for item in shown if item["id"] == str(controller.number)]
        where = f"{source}: ctrl{controller.number} ({controller.uri})"
        if len(listed) != 1:
            problems.append(f"{where}: shown {len(listed)} times")
            continue
        item = listed[0]
        names = controller.names()
        if names and item["product"] not in names:
            problems.append(f"{where}: product name {item['product']!r}, the tree says "
                            f"{' or '.join(sorted(map(repr, names)))}")
        serial = controller.first.get("SerialNumber") or ""
        if item["serial"] is not None and item["serial"] != serial:
            problems.append(f"{where}: serial {item['serial']!r}, the tree says {serial!r}")

        rows = list(item["disks"])
        for drive in controller.drives:
            matching = [row for row in rows if row["id"] == str(drive.id)]
            rows = [row for row in rows if row["id"] != str(drive.id)]
            if len(matching) != 1:
                problems.append(f"{where}: disk {drive.id} ({drive.uri}) shown "
                                f"{len(matching)} times")
                continue
            row = matching[0]
            texts = {text for text in (drive.model, drive.name) if text} or {""}
            if row["product"] not in texts:
                problems.append(f"{where}: disk {drive.id} ({drive.uri}) shown as "
                                f"{row['product']!r}, the tree says "
                                f"{' or '.join(sorted(map(repr, texts)))}")
            if row["serial"] != drive.serial:
                problems.append(f"{where}: disk {drive.id} ({drive.uri}) serial "
                                f"{row['serial']!r}, the tree says {drive.serial!r}")
            if row["state"] != drive.state:
                problems.append(f"{where}: disk {drive.id} ({drive.uri}) state "
                                f"{row['state']!r}, expected {drive.state!r}")
        for row in rows:
            problems.append(f"{where}: disk {row['id']} ({row['product']!r}) shown, the tree "
                            f"has no such drive present in this Storage")

        volumes = list(item["volumes"])
        for volume in controller.raid_volumes():
            matching = [row for row in volumes if row["id"] == str(volume.id)]
            volumes = [row for row in volumes if row["id"] != str(volume.id)]
            if len(matching) != 1:
                problems.append(f"{where}: volume {volume.id} ({volume.uri}) shown "
                                f"{len(matching)} times")
                continue
            row = matching[0]
            if row["name"] != volume.name:
                problems.append(f"{where}: volume {volume.id} ({volume.uri}) named "
                                f"{row['name']!r}, the tree says {volume.name!r}")
            if row["level"] != volume.level:
                problems.append(f"{where}: volume {volume.id} ({volume.uri}) level "
                                f"{row['level']!r}, expected {volume.level!r}")
        for row in volumes:
            problems.append(f"{where}: volume {row['id']} ({row['name']!r}) shown, which is no "
                            f"volume of this Storage")
    return problems


# ---- runs and request logs ---------------------------------------------------------------------


class Run:
    """One raidcfg run: its exit status, result line and requests."""

    def __init__(self, folder):
        self.folder = folder
        self.stdout = read_text(os.path.join(folder, "stdout"))
        self.stderr = read_text(os.path.join(folder, "stderr")) or ""
        rc = read_text(os.path.join(folder, "rc"))
        self.rc = int(rc) if rc and rc.strip().lstrip("-").isdigit() else None
        lines = [line for line in (self.stdout or "").splitlines() if line.strip()]
        self.last = lines[-1].strip() if lines else ""
        self.requests = []
        for line in (read_text(os.path.join(folder, "requests.log")) or "").splitlines():
            parts = line.split(" ")
            if len(parts) >= 3:
                self.requests.append((parts[0], " ".join(parts[1:-1]), parts[-1]))

    def ran(self):
        return self.stdout is not None and self.rc is not None

    def outcome(self):
        return f"exit {self.rc}: {self.last}" if self.last else f"exit {self.rc}, no output"

    def trouble(self):
        """Why the run is no proper run of raidcfg (crash, hang, no result line), or None."""
        if not self.ran():
            return "did not run"
        match = re.fullmatch(r"([0-9]+) .*", self.last)
        if not match:
            detail = self.stderr.strip().splitlines()[-1:] or ["nothing on standard error"]
            return f"no result line (exit {self.rc}; {detail[0]})"
        code = int(match.group(1))
        if self.rc != (code if code <= 255 else 1):
            return f"exit status {self.rc} does not match the result line {self.last!r}"
        return None

    def succeeded(self):
        return self.rc == 0 and self.last == "0 Succeed."

    def writes(self, machine):
        """Every request that may change something, except the session's own log-in and out."""
        found = []
        for method, uri, status in self.requests:
            if method in ("GET", "HEAD"):
                continue
            if method == "POST" and clean(uri) == machine.sessions:
                continue
            if method == "DELETE" and under(uri, machine.sessions):
                continue
            found.append((method, clean(uri), status))
        return found


def show_lines(lines):
    return ", ".join(f"{method} {uri} {status}" for method, uri, status in lines) or "none"


def emulator_trouble(group):
    text = read_text(os.path.join(group, "emulator.err")) or ""
    lines = [line for line in text.splitlines() if line.strip()]
    return lines[-1] if lines else "no message"


# ---- the checks --------------------------------------------------------------------------------


def verify_reads(machine, group):
    """show and save against the tree, and that both only read."""
    results = []
    show = Run(os.path.join(group, "show"))
    if not show.ran():
        failed = f"the emulator did not serve ({emulator_trouble(group)})"
        return [("show", [failed]), ("show: requests", [failed]), ("save", [failed]),
                ("save: requests", [failed])]

    problems = []
    trouble = show.trouble()
    if trouble:
        problems.append(trouble)
    elif not show.succeeded():
        problems.append(f"did not succeed ({show.outcome()})")
    if not problems:
        problems += compare(machine, shown_from_stdout(show.stdout), "stdout")
        xml = os.path.join(show.folder, "out", "raid_show_result.xml")
        try:
            problems += compare(machine, shown_from_xml(xml), "raid_show_result.xml")
        except (OSError, ElementTree.ParseError) as error:
            problems.append(f"raid_show_result.xml: {error}")
    results.append(("show", problems))
    results.append(("show: requests", read_only(machine, show)))

    save = Run(os.path.join(group, "save"))
    problems = []
    trouble = save.trouble()
    if trouble:
        problems.append(trouble)
    elif not save.succeeded():
        problems.append(f"did not succeed ({save.outcome()})")
    saved = read_text(os.path.join(save.folder, "out", "saved.ini"))
    if saved is None:
        problems.append("no saved.ini written")
    elif not problems:
        sections = {}
        current = None
        for line in saved.splitlines():
            header = re.fullmatch(r"\s*\[ctrl([0-9]+)-vol([0-9]+)\]\s*", line)
            if header:
                current = []
                sections.setdefault(int(header.group(1)), []).append(current)
            elif re.fullmatch(r"\s*\[.*\]\s*", line):
                current = None
            elif current is not None and "=" in line:
                key, value = line.split("=", 1)
                if key.strip() == "vol_name":
                    current.append(value.strip())
        for controller in machine.controllers:
            want = sorted(volume.name for volume in controller.raid_volumes())
            have = sections.pop(controller.number, [])
            names = sorted(section[0] if section else "" for section in have)
            if len(have) != len(want):
                problems.append(f"ctrl{controller.number}: {len(have)} [ctrl{controller.number}"
                                f"-volM] sections, {len(want)} volumes")
            elif names != want:
                problems.append(f"ctrl{controller.number}: volume names {names}, the tree "
                                f"says {want}")
        for number in sorted(sections):
            problems.append(f"[ctrl{number}-volM] sections for a controller the tree lacks")
    results.append(("save", problems))
    results.append(("save: requests", read_only(machine, save)))
    return results


def read_only(machine, run):
    if not run.ran():
        return ["did not run"]
    writes = run.writes(machine)
    return [f"sent {show_lines(writes)}"] if writes else []


class Check:
    """One write and what it must send: required is a list of alternatives (each a sorted list
    of (method, uri)); optional requests may come on top; success, refusal or either."""

    def __init__(self, name, kind, controller, args, prep=None):
        self.name = name
        self.kind = kind
        self.controller = controller
        self.args = args
        self.prep = prep
        self.required = [[]]
        self.optional = set()
        self.must = "either"  # "success", "refusal" or "either"
        self.disk = None
        self.after = None  # the disk state wanted afterwards, or "same"


def free_disk(machine):
    """A disk in no volume and no hot spare, the writes that make one when the tree has none,
    or None: (controller, drive, preparation arguments or None, how it was freed)."""
    linked = machine.all_volume_drives()
    for controller in machine.controllers:
        for drive in controller.drives:
            in_volume = clean(drive.uri) in linked or (drive.resource.get("Links") or {}).get(
                "Volumes")
            if not in_volume and drive.state == "UGood":
                return controller, drive, None, ""
    for controller in machine.controllers:
        for drive in controller.drives:
            if drive.global_spare:
                return (controller, drive, ["rmhsp", "--ctrl", str(controller.number), "--disk",
                                            str(drive.id), "-y"], "freed by rmhsp")
    for controller in machine.controllers:
        for drive in controller.drives:
            if drive.state == "JBOD":
                return (controller, drive, ["makegood", "--ctrl", str(controller.number),
                                            "--disk", str(drive.id), "-y"], "freed by makegood")
    return None


def member_disk(machine):
    """A disk that belongs to a RAID volume (not a pass-through one), preferably on a controller
    that offers JBOD disks at all, so that only the membership stands in the way."""
    found = [(controller, drive) for controller in machine.controllers
             for drive in controller.drives
             if drive.volumes and not any(volume.pass_through for volume in drive.volumes)]
    found.sort(key=lambda pair: not pair[0].offers_jbod())
    return found[0] if found else None


def plan(machine):
    """The write checks of this tree, and notes about what the tree cannot offer."""
    checks = []
    notes = []

    def words(*parts):
        return [str(part) for part in parts]

    for controller in machine.controllers:
        n = controller.number
        check = Check(f"clear --ctrl {n}", "clear", controller, words("clear", "--ctrl", n, "-y"))
        deletes = sorted(("DELETE", clean(volume.uri)) for volume in controller.raid_volumes())
        check.required = [deletes]
        if controller.reset_target:
            check.required.append([("POST", clean(controller.reset_target))])
        # Clearing a configuration also frees its hot spares, as the controllers themselves do.
        check.optional = {("PATCH", clean(drive.uri)) for drive in controller.drives if drive.spare}
        check.must = "success" if deletes else "either"
        checks.append(check)

    free = free_disk(machine)
    if free:
        controller, drive, prep, how = free
        n = controller.number
        suffix = f" ({how})" if how else ""
        check = Check(f"makejbod --ctrl {n} --disk {drive.id}{suffix}", "makejbod", controller,
                      words("makejbod", "--ctrl", n, "--disk", drive.id, "-y"), prep)
        check.required = [[("POST", clean(controller.volumes_link))]]
        check.must, check.disk, check.after = "success", drive, "JBOD"
        checks.append(check)
        check = Check(f"addhsp --ctrl {n} --disk {drive.id}{suffix}", "addhsp", controller,
                      words("addhsp", "--ctrl", n, "--disk", drive.id, "-y"), prep)
        check.required = [[("PATCH", clean(drive.uri))]]
        check.must, check.disk, check.after = "success", drive, "GHS"
        checks.append(check)
    else:
        notes.append(("makejbod, addhsp", "no free disk, global hot spare or JBOD disk"))

    member = member_disk(machine)
    if member:
        controller, drive = member
        n = controller.number
        for action in ("makejbod", "addhsp", "makegood"):
            check = Check(f"{action} --ctrl {n} --disk {drive.id} (a volume's member)", action,
                          controller, words(action, "--ctrl", n, "--disk", drive.id, "-y"))
            check.must, check.disk, check.after = "refusal", drive, "same"
            checks.append(check)

    jbod = next(((controller, drive) for controller in machine.controllers
                 for drive in controller.drives if drive.state == "JBOD"), None)
    if jbod:
        controller, drive = jbod
        n = controller.number
        check = Check(f"makegood --ctrl {n} --disk {drive.id} (JBOD)", "makegood", controller,
                      words("makegood", "--ctrl", n, "--disk", drive.id, "-y"))
        check.required = [[("DELETE", clean(drive.volumes[0].uri))]]
        check.must, check.disk, check.after = "success", drive, "UGood"
        checks.append(check)
    else:
        notes.append(("makegood (JBOD)", "no pass-through volume"))

    shared = next(((controller, drive) for controller in machine.controllers
                   for drive in controller.drives
                   if any(volume.resource.get("RAIDType") == "None" and len(volume.drives) > 1
                          for volume in drive.volumes)), None)
    if shared:
        controller, drive = shared
        n = controller.number
        check = Check(f"makegood --ctrl {n} --disk {drive.id} (in a RAIDType None volume of "
                      f"several drives)", "makegood", controller,
                      words("makegood", "--ctrl", n, "--disk", drive.id, "-y"))
        check.must, check.disk, check.after = "refusal", drive, "same"
        checks.append(check)

    spare = next(((controller, drive) for controller in machine.controllers
                  for drive in controller.drives if drive.global_spare), None)
    if spare:
        controller, drive = spare
        n = controller.number
        check = Check(f"rmhsp --ctrl {n} --disk {drive.id}", "rmhsp", controller,
                      words("rmhsp", "--ctrl", n, "--disk", drive.id, "-y"))
        check.required = [[("PATCH", clean(drive.uri))]]
        check.must, check.disk, check.after = "success", drive, "UGood"
        checks.append(check)
    else:
        notes.append(("rmhsp", "no global hot spare"))

    for controller in machine.controllers:
        volumes = controller.raid_volumes()
        if not volumes:
            continue
        volume = volumes[0]
        n = controller.number
        check = Check(f"init --ctrl {n} --vol {volume.id}", "init", controller,
                      words("init", "--ctrl", n, "--vol", volume.id, "-y"))
        action = (volume.resource.get("Actions") or {}).get("#Volume.Initialize")
        allowed = action.get("InitializeType@Redfish.AllowableValues") \
            if isinstance(action, dict) else None
        if isinstance(action, dict) and (not isinstance(allowed, list) or "Fast" in allowed):
            own = clean(volume.uri) + "/Actions/Volume.Initialize"
            targets = {clean(action.get("target") or own), own}
            check.required = [[("POST", target)] for target in sorted(targets)]
            check.must = "either"  # whatever the BMC answers to the action
        else:
            check.must = "refusal"
        checks.append(check)
    return checks, notes


def disk_state(shown, controller, drive):
    for item in shown:
        if item["id"] == str(controller):
            for disk in item["disks"]:
                if disk["id"] == str(drive):
                    return disk["state"]
            return None
    return None


def verify_write(machine, check, group):
    problems = []
    if check.prep:
        prep = Run(os.path.join(group, "prep"))
        if not prep.ran():
            return [f"the emulator did not serve ({emulator_trouble(group)})"], ""
        if not prep.succeeded():
            return [f"the preparation 'raidcfg {' '.join(check.prep)}' did not succeed "
                    f"({prep.outcome()})"], ""
    run = Run(os.path.join(group, "run"))
    if not run.ran():
        return [f"the emulator did not serve ({emulator_trouble(group)})"], ""
    trouble = run.trouble()
    if trouble:
        problems.append(trouble)
    elif check.must == "success" and not run.succeeded():
        problems.append("did not succeed")
    elif check.must == "refusal" and run.rc == 0:
        problems.append("succeeded, where it must refuse")

    writes = run.writes(machine)
    sent = sorted((method, uri) for method, uri, _ in writes)
    core = sorted(request for request in sent if request not in check.optional)
    if core not in [sorted(alternative) for alternative in check.required]:
        wanted = " or ".join(
            ", ".join(f"{method} {uri}" for method, uri in alternative) or "no write"
            for alternative in check.required)
        problems.append(f"sent {show_lines(writes)}; expected {wanted}")

    after = Run(os.path.join(group, "after"))
    if not after.ran() or not after.succeeded():
        problems.append(f"show afterwards did not succeed ({after.outcome()})")
    else:
        try:
            shown = shown_from_xml(os.path.join(after.folder, "out", "raid_show_result.xml"))
        except (OSError, ElementTree.ParseError) as error:
            shown = None
            problems.append(f"show afterwards: raid_show_result.xml: {error}")
        if shown is not None:
            problems += after_state(machine, check, shown)
    return problems, run.outcome()


def after_state(machine, check, shown):
    problems = []
    n = check.controller.number
    if check.kind == "clear":
        for controller in machine.controllers:
            item = next((item for item in shown if item["id"] == str(controller.number)), None)
            if item is None:
                problems.append(f"show afterwards lists no ctrl{controller.number}")
                continue
            have = sorted(volume["id"] for volume in item["volumes"])
            want = [] if controller.number == n else sorted(
                str(volume.id) for volume in controller.raid_volumes())
            if have != want:
                problems.append(f"show afterwards: ctrl{controller.number} volumes {have}, "
                                f"expected {want}")
        return problems
    if check.disk is None:
        return problems
    state = disk_state(shown, n, check.disk.id)
    want = check.disk.state if check.after == "same" else check.after
    if state != want:
        problems.append(f"show afterwards: disk {check.disk.id} is {state or 'not shown'}, "
                        f"expected {want}")
    return problems


# ---- command line ------------------------------------------------------------------------------


def say(mockup, check, problems, detail=""):
    if problems:
        print(f"interop: {mockup}: {check}: FAILED: {'; '.join(problems)}"
              + (f" ({detail})" if detail else ""))
    else:
        print(f"interop: {mockup}: {check}: ok" + (f" ({detail})" if detail else ""))


def main(argv):
    if len(argv) < 3 or argv[1] not in ("plan", "verify") or \
            (argv[1] == "verify" and len(argv) != 5):
        sys.stderr.write(__doc__)
        return 2
    folder = argv[2]
    mockup = os.path.basename(os.path.normpath(folder))
    try:
        machine = Machine(folder)
    except ValueError as error:
        if argv[1] == "verify":
            say(mockup, argv[3], [f"the tree cannot be read: {error}"])
        else:
            print(f"interop: {mockup}: tree: FAILED: {error}", file=sys.stderr)
            return 1
        return 0
    checks, notes = plan(machine)
    if argv[1] == "plan":
        for check in checks:
            print("\t".join([check.name, " ".join(check.prep) if check.prep else "-",
                             " ".join(check.args)]))
        return 0
    name, group = argv[3], argv[4]
    if name == "show":
        for check, problems in verify_reads(machine, group):
            say(mockup, check, problems)
        for check, reason in notes:
            print(f"interop: {mockup}: {check}: skipped: {reason}")
        return 0
    check = next((check for check in checks if check.name == name), None)
    if check is None:
        say(mockup, name, ["no such check for this tree"])
        return 0
    problems, outcome = verify_write(machine, check, group)
    say(mockup, name, problems, outcome)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
