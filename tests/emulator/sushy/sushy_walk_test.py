#!/usr/bin/env python3
"""Walk raidcfg-bmc with sushy, the Redfish client library that OpenStack Ironic uses.

Usage: python3 sushy_walk_test.py RAIDCFG_BMC_BINARY MACHINE_JSON [-v]

The machine file is copied into a temporary directory and served from there, so the file given is
never changed. The emulator listens on 127.0.0.1 over plain HTTP on a free port; sushy logs in with
a session (the machine file's bmc.user and bmc.password) and walks what a provisioning service
reads: the one ComputerSystem, every Storage with its controllers, drives and volumes, the Manager
and the TaskService. Then it creates a RAID 1 volume on two free disks through
VolumeCollection.create(), follows the task monitor the emulator answers with, and checks that
the volume is in the machine file and in a freshly read Volumes collection.

Every step runs even when an earlier independent one failed, so one run names every place sushy
and the emulator disagree. Each failure is printed with the exception sushy raised and the line
of sushy's own source that raised it.

Exit status: 0 when every step passed, 1 when a step failed, 2 for a bad command line or an
emulator that would not start. -v also prints the emulator's request log.

Needs only the standard library and sushy (Debian: python3-sushy).
"""

import json
import logging
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import traceback

try:
    import sushy
    from sushy import auth as sushy_auth
    from sushy import connector as sushy_connector
    from sushy import taskmonitor as sushy_taskmonitor
except ImportError as exc:  # pragma: no cover - the environment lacks the library
    print("FAIL import sushy: %s (install python3-sushy and run this with the system's python3)" % exc)
    sys.exit(2)

# The families raidcfg-bmc serves; the in-band ones of a machine file have no Storage.
SERVED_FAMILIES = ("OOB_LSI", "OOB_CFC", "OOB_M2", "OOB_MICROCHIP", "OOB_VROC")
MIB = 1048576
# The size of the volumes this walk creates: small enough for any pair of free demo disks.
NEW_VOLUME_MIB = 102400
STARTUP_SECONDS = 15
STOP_SECONDS = 10


class Skip(Exception):
    """A step that cannot run because a step it needs failed."""


class SushyWarnings(logging.Handler):
    """Keeps sushy's own warnings: they name properties it looked for and did not find."""

    def __init__(self):
        super().__init__(level=logging.WARNING)
        self.records = []

    def emit(self, record):
        self.records.append("%s: %s" % (record.name, record.getMessage()))


class Exchanges:
    """Every request sushy made and the answer it got, through the connector's callback."""

    def __init__(self):
        self.responses = []

    def __call__(self, response):
        self.responses.append(response)

    def find(self, method, path_end):
        for response in self.responses:
            request = response.request
            if request.method == method and request.path_url.split("?")[0].rstrip("/").endswith(path_end):
                return response
        return None


def sushy_origin(exc):
    """The innermost line of sushy's source in the traceback of exc, as sushy/FILE:LINE."""
    package = os.path.dirname(os.path.abspath(sushy.__file__))
    origin = None
    for frame in traceback.extract_tb(exc.__traceback__):
        if os.path.abspath(frame.filename).startswith(package + os.sep):
            relative = os.path.relpath(frame.filename, os.path.dirname(package))
            origin = "%s:%d (%s)" % (relative, frame.lineno, frame.line)
    return origin


class Walk:
    """Runs the steps and keeps their results."""

    def __init__(self):
        self.failures = []
        self.passed = 0

    def step(self, name, function, *args):
        """Run one step; its return value is handed on, None when it failed or was skipped."""
        try:
            detail = function(*args)
        except Skip as skip:
            print("skip %s: %s" % (name, skip))
            return None
        except Exception as exc:  # every failure is reported, the walk goes on
            origin = sushy_origin(exc)
            text = "%s: %s" % (type(exc).__name__, exc)
            if origin:
                text += "\n      raised at %s" % origin
            print("FAIL %s: %s" % (name, text))
            self.failures.append(name)
            return None
        self.passed += 1
        summary = detail[0] if isinstance(detail, tuple) else detail
        print("ok   %s%s" % (name, ": " + summary if isinstance(summary, str) and summary else ""))
        return detail[1] if isinstance(detail, tuple) else detail


def expect(condition, message):
    if not condition:
        raise AssertionError(message)


def need(value, what):
    if value is None:
        raise Skip("%s is not available" % what)
    return value


def storage_id(controller):
    return "%s-%d" % (controller["family"], controller["id"])


def served_controllers(machine):
    return [c for c in machine.get("controllers", []) if c.get("family") in SERVED_FAMILIES]


def free_disk_pairs(machine):
    """(storage id, [disk, disk]) for each served controller with two UGood disks and RAID 1."""
    pairs = []
    for controller in served_controllers(machine):
        levels = [str(level).upper().replace("RAID", "") for level in controller.get("raid_levels", [])]
        free = [d for d in controller.get("disks", []) if d.get("state") == "UGood"]
        if "1" in levels and len(free) >= 2:
            pairs.append((storage_id(controller), free[:2]))
    return pairs


def start_emulator(binary, machine_path, work):
    port_file = os.path.join(work, "port")
    log = os.path.join(work, "requests.log")
    stdout = open(os.path.join(work, "stdout"), "w")
    stderr = open(os.path.join(work, "stderr"), "w")
    process = subprocess.Popen(
        [binary, "--machine", machine_path, "--listen", "127.0.0.1:0",
         "--port-file", port_file, "--log-requests", log],
        stdout=stdout, stderr=stderr, stdin=subprocess.DEVNULL)
    stdout.close()
    stderr.close()
    deadline = time.monotonic() + STARTUP_SECONDS
    while time.monotonic() < deadline:
        if process.poll() is not None:
            return process, None
        try:
            with open(port_file) as handle:
                text = handle.read()
            # The emulator renames a finished file into place, so a newline means a whole number.
            if text.endswith("\n") and text.strip().isdigit():
                return process, int(text)
        except FileNotFoundError:
            pass
        time.sleep(0.05)
    return process, None


def stop_emulator(process):
    """SIGTERM, then SIGKILL if it does not end; returns its exit status."""
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(STOP_SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            return "killed after %d s without ending on SIGTERM" % STOP_SECONDS
    return process.returncode


def masked(headers):
    shown = {}
    for key, value in headers.items():
        if key.lower() in ("authorization", "x-auth-token"):
            value = "<%d characters>" % len(value)
        shown[key] = value
    return shown


def print_exchange(title, response):
    request = response.request
    body = request.body.decode() if isinstance(request.body, bytes) else request.body
    print("---- %s" % title)
    print("  request:  %s %s" % (request.method, request.path_url))
    print("  headers:  %s" % json.dumps(masked(request.headers)))
    print("  body:     %s" % body)
    print("  answer:   %d, Location %s" % (response.status_code, response.headers.get("Location")))
    text = response.text
    print("  body:     %s" % (text if len(text) < 600 else text[:600] + "..."))


def run(binary, machine_source, verbose):
    with open(machine_source) as handle:
        machine = json.load(handle)
    bmc = machine.get("bmc") or {}
    user, password = bmc.get("user"), bmc.get("password")
    if not user or password is None:
        print("FAIL machine file: no bmc.user and bmc.password")
        return 2

    work = tempfile.mkdtemp(prefix="raidcfg-sushy-")
    machine_path = os.path.join(work, "machine.json")
    shutil.copyfile(machine_source, machine_path)

    warnings = SushyWarnings()
    logging.getLogger("sushy").addHandler(warnings)
    logging.getLogger("sushy").setLevel(logging.WARNING)
    logging.getLogger("sushy").propagate = False

    # A SIGTERM to this script still stops the emulator: it unwinds through the finally below.
    signal.signal(signal.SIGTERM, lambda signum, frame: sys.exit(128 + signum))
    process, port = start_emulator(binary, machine_path, work)
    walk = Walk()
    exchanges = Exchanges()
    try:
        if port is None:
            with open(os.path.join(work, "stderr")) as handle:
                print("FAIL start the emulator: no port (exit %s): %s"
                      % (process.poll(), handle.read().strip()))
            return 2
        base_url = "http://127.0.0.1:%d" % port
        print("emulator on %s, serving a copy of %s" % (base_url, os.path.basename(machine_source)))
        walk_service(walk, base_url, user, password, machine, machine_path, exchanges)
    finally:
        status = stop_emulator(process)
        print("emulator stopped: exit %s" % status)
        if status != 0:
            walk.failures.append("emulator exit status")
        if verbose or walk.failures:
            for name in ("stderr", "requests.log"):
                path = os.path.join(work, name)
                if os.path.exists(path):
                    with open(path) as handle:
                        lines = handle.read().splitlines()
                    shortened = name == "requests.log" and not verbose
                    if shortened:
                        lines = lines[-40:]
                    print("---- emulator %s%s" % (name, " (last lines)" if shortened else ""))
                    for line in lines:
                        print("  " + line)
        shutil.rmtree(work, ignore_errors=True)

    if warnings.records:
        print("---- sushy warnings")
        for record in warnings.records:
            print("  " + record)
    print("%d steps passed, %d failed%s" % (walk.passed, len(walk.failures),
                                            ": " + ", ".join(walk.failures) if walk.failures else ""))
    return 1 if walk.failures else 0


def walk_service(walk, base_url, user, password, machine, machine_path, exchanges):
    connector = sushy_connector.Connector(base_url, verify=False, response_callback=exchanges)
    state = {}

    def session_login():
        session = sushy_auth.SessionAuth(username=user, password=password)
        root = sushy.Sushy(base_url, auth=session, connector=connector)
        expect(session.get_session_key(), "no X-Auth-Token after the login")
        state["auth"] = session
        return ("session %s, Redfish %s" % (session.get_session_resource_id(), root.redfish_version), root)

    root = walk.step("service root with session login", session_login)
    if root is None:
        # Basic authentication keeps the rest of the walk going when the session login failed.
        def basic_login():
            basic = sushy_auth.BasicAuth(username=user, password=password)
            fallback = sushy.Sushy(base_url, auth=basic,
                                   connector=sushy_connector.Connector(
                                       base_url, verify=False, response_callback=exchanges))
            state["auth"] = basic
            return ("Redfish %s" % fallback.redfish_version, fallback)
        root = walk.step("service root with basic authentication", basic_login)
        if root is None:
            return

    system = walk.step("get_system()", lambda: _system(root))
    walk.step("system power state, boot, reset action", lambda: _system_details(need(system, "the system")))
    storages = walk.step("system.storage.get_members()",
                         lambda: _storage_members(need(system, "the system"), machine))
    for storage in storages or []:
        controller = next(c for c in served_controllers(machine) if storage_id(c) == storage.identity)
        walk.step("storage %s: storage_controllers" % storage.identity,
                  lambda: _storage_controllers(storage, controller))
        walk.step("storage %s: controllers collection" % storage.identity,
                  lambda: _controllers(storage))
        walk.step("storage %s: drives" % storage.identity, lambda: _drives(storage, controller))
        walk.step("storage %s: volumes.get_members()" % storage.identity,
                  lambda: _volumes(storage, controller))
    walk.step("get_manager()", lambda: _manager(root))
    walk.step("get_task_service() and its tasks", lambda: _tasks(root))

    pairs = free_disk_pairs(machine)
    if not pairs:
        print("FAIL volume creation: the machine file has no served controller with two UGood disks")
        walk.failures.append("volume creation")
    else:
        target, disks = pairs[0]
        created = walk.step("storage %s: volumes.create(RAID1 on disks %s)"
                            % (target, ", ".join(str(d["id"]) for d in disks)),
                            lambda: _create(root, need(system, "the system"), target, disks, exchanges))
        walk.step("storage %s: the task monitor" % target,
                  lambda: _follow_monitor(root, connector, need(created, "the create answer")))
        walk.step("storage %s: new volume in the machine file" % target,
                  lambda: _volume_on_disk(machine_path, target, disks))
        walk.step("storage %s: new volume in a fresh volumes.get_members()" % target,
                  lambda: _volume_listed(need(system, "the system"), target, disks))
        if len(pairs) > 1:
            # A caller may ask for Immediate; sushy then waits on the task monitor inside the POST.
            second, second_disks = pairs[1]
            walk.step("storage %s: volumes.create(RAID1, apply_time Immediate: blocking)" % second,
                      lambda: _create_blocking(need(system, "the system"), second, second_disks, exchanges,
                                               machine_path))

    walk.step("system reset_system(On)", lambda: _reset(need(system, "the system")))

    def logout():
        auth = state.get("auth")
        if not isinstance(auth, sushy_auth.SessionAuth):
            raise Skip("no session to end")
        location = auth.get_session_resource_id()
        auth.close()
        answer = exchanges.find("DELETE", location.rstrip("/"))
        expect(answer is not None and answer.status_code in (200, 204),
               "DELETE of the session answered %s" % (answer.status_code if answer else "nothing"))
        return "DELETE %s answered %d" % (location, answer.status_code)

    walk.step("session logout", logout)


def _system(root):
    system = root.get_system()
    return ("%s (%s)" % (system.path, system.identity), system)


def _system_details(system):
    expect(system.power_state is not None, "PowerState missing or not one sushy knows: %r"
           % system.json.get("PowerState"))
    allowed = system.get_allowed_reset_system_values()
    expect(allowed, "no reset values")
    boot = system.boot
    return "power %s, boot enabled=%s target=%s mode=%s, reset %s" % (
        system.power_state.value, boot.enabled, boot.target, boot.mode,
        sorted(v.value for v in allowed))


def _storage_members(system, machine):
    members = system.storage.get_members()
    served = [storage_id(c) for c in served_controllers(machine)]
    found = [s.identity for s in members]
    expect(sorted(found) == sorted(served), "Storage ids %s, the machine file has %s" % (found, served))
    return ("%d: %s" % (len(found), ", ".join(found)), members)


def _storage_controllers(storage, controller):
    listed = storage.storage_controllers
    expect(len(listed) == 1, "%d StorageControllers" % len(listed))
    entry = listed[0]
    levels = [t.value if t else None for t in entry.raid_types or []]
    expect(None not in levels, "SupportedRAIDTypes holds a value sushy does not know: %s"
           % storage.json.get("StorageControllers", [{}])[0].get("SupportedRAIDTypes"))
    return "%s, %s, RAID %s" % (entry.member_id, entry.name, levels)


def _controllers(storage):
    members = storage.controllers.get_members()
    expect(len(members) == 1, "%d controllers" % len(members))
    return "%s: %s, %s" % (members[0].identity, members[0].name, storage.controllers.summary)


def disk_number(storage, drive):
    """The machine file's disk id of a Drive: the Chassis names it "<Storage id>-<disk id>"."""
    prefix = storage.identity + "-"
    expect(drive.identity.startswith(prefix),
           "drive %s: Id %r does not start with %r" % (drive.path, drive.identity, prefix))
    return drive.identity[len(prefix):]


def _drives(storage, controller):
    drives = storage.drives
    by_id = {str(d["id"]): d for d in controller.get("disks", [])}
    found = sorted(disk_number(storage, d) for d in drives)
    expect(found == sorted(by_id), "drives %s, the machine file has %s" % (found, sorted(by_id)))
    for drive in drives:
        disk = by_id[disk_number(storage, drive)]
        where = "drive %s" % drive.path
        expect(drive.capacity_bytes == disk["capacity_mb"] * MIB,
               "%s: CapacityBytes %r, expected %d" % (where, drive.capacity_bytes, disk["capacity_mb"] * MIB))
        if disk.get("media_type") in ("HDD", "SSD", "SMR"):
            expect(drive.media_type == disk["media_type"], "%s: MediaType %r" % (where, drive.media_type))
        if disk.get("disk_type") in ("SAS", "SATA", "NVMe"):
            expect(drive.protocol is not None and drive.protocol.value == disk["disk_type"],
                   "%s: Protocol %r (JSON %r)" % (where, drive.protocol, drive.json.get("Protocol")))
        expect(drive.status is not None and drive.status.state is not None,
               "%s: Status.State %r" % (where, drive.json.get("Status")))
        member_of = sorted(str(v["id"]) for v in controller.get("volumes", [])
                           if disk["id"] in [i for span in v.get("spans", []) for i in span])
        if disk.get("state") == "JBOD":
            member_of = ["PassThrough-%s" % disk["id"]]
        if member_of:
            # Drive.volumes follows Links.Volumes; sushy takes an empty list for a missing
            # property, so only the drives that are in a volume can be asked.
            linked = sorted(v.path.rsplit("/", 1)[-1] for v in drive.volumes)
            expect(linked == member_of, "%s: Links.Volumes %s, expected %s" % (where, linked, member_of))
    return "%d: %s" % (len(drives), ", ".join(
        "%s %s %s %dMiB %s" % (d.identity, d.protocol.value if d.protocol else "-", d.media_type,
                               d.capacity_bytes // MIB, d.status.state.value) for d in drives))


def _volumes(storage, controller):
    volumes = storage.volumes.get_members()
    raid = {str(v["id"]): v for v in controller.get("volumes", [])}
    listed = {v.identity: v for v in volumes if not v.identity.startswith("PassThrough-")}
    expect(sorted(listed) == sorted(raid), "RAID volumes %s, the machine file has %s"
           % (sorted(listed), sorted(raid)))
    for identity, volume in listed.items():
        expect(volume.capacity_bytes == raid[identity]["size_mb"] * MIB,
               "volume %s: CapacityBytes %r" % (volume.path, volume.capacity_bytes))
        expect(volume.raid_type is not None or volume.json.get("RAIDType") is None,
               "volume %s: RAIDType %r is not one sushy knows" % (volume.path, volume.json.get("RAIDType")))
    return "%d: %s" % (len(volumes), ", ".join(
        "%s %s %dMiB" % (v.identity, v.raid_type.value if v.raid_type else v.json.get("RAIDType"),
                         (v.capacity_bytes or 0) // MIB) for v in volumes))


def _manager(root):
    manager = root.get_manager()
    expect(manager.manager_type is not None, "ManagerType %r is not one sushy knows"
           % manager.json.get("ManagerType"))
    return "%s: %s %s, firmware %s" % (manager.path, manager.manager_type.value, manager.name,
                                       manager.firmware_version)


def _tasks(root):
    service = root.get_task_service()
    tasks = service.tasks.get_members()
    return "%s (%s), %d tasks %s" % (service.path, service.name, len(tasks), service.tasks.summary)


def _find_storage(system, target):
    system.storage.refresh(force=True)
    for storage in system.storage.get_members():
        if storage.identity == target:
            return storage
    raise AssertionError("no Storage %s" % target)


def _payload(storage, disks, name):
    """The body of a new volume: its name, RAID type, size and the member Drives' links."""
    paths = {disk_number(storage, drive): drive.path for drive in storage.drives}
    links = []
    for disk in disks:
        expect(str(disk["id"]) in paths, "disk %s has no Drive in %s" % (disk["id"], storage.path))
        links.append({"@odata.id": paths[str(disk["id"])]})
    return {"Name": name, "RAIDType": "RAID1", "CapacityBytes": NEW_VOLUME_MIB * MIB,
            "Links": {"Drives": links}}


def _create(root, system, target, disks, exchanges):
    storage = _find_storage(system, target)
    volumes = storage.volumes
    apply_times = volumes.operation_apply_time_support
    print("     Volumes @Redfish.OperationApplyTimeSupport: %s"
          % (volumes.json.get("@Redfish.OperationApplyTimeSupport") if apply_times is None
             else apply_times.supported_values))
    result = volumes.create(_payload(storage, disks, "sushy_r1"))
    post = exchanges.find("POST", volumes.path)
    if post is not None:
        print_exchange("the create request sushy sent", post)
    if isinstance(result, sushy_taskmonitor.TaskMonitor):
        location = post.headers.get("Location") if post is not None else None
        print("     create returned a TaskMonitor: task_monitor_uri %s (Location %s), is_processing %s,"
              " task %s" % (result.task_monitor_uri, location, result.is_processing,
                            result.task.identity if result.task else None))
        return ("TaskMonitor %s" % result.task_monitor_uri, (result, location))
    expect(result is not None, "create returned nothing (answer %s)" % (post.status_code if post else "?"))
    return ("Volume %s" % result.path, (result, None))


def has_standard_registries():
    return os.path.isdir(os.path.join(os.path.dirname(sushy.__file__), "standard_registries"))


def _monitor(root, connector, uri):
    """A TaskMonitor read afresh, as a caller that kept only its URI makes one.

    The root hands over the message registries for parse_messages(), loading those sushy ships
    with itself; a build of sushy that left them out fails there for any BMC, so the monitor is
    then made with no registries and the messages keep the text the emulator gave them.
    """
    if has_standard_registries():
        return root.get_task_monitor(uri)
    return sushy_taskmonitor.TaskMonitor(connector, uri, redfish_version=root.redfish_version,
                                         registries={})


def _follow_monitor(root, connector, created):
    result, location = created
    if not isinstance(result, sushy_taskmonitor.TaskMonitor):
        raise Skip("the create answered the volume at once")
    if not has_standard_registries():
        print("     note: this sushy has no standard_registries folder, so Sushy.get_task_monitor()"
              " and Sushy.registries fail for any BMC; monitors are made without registries")
    # Wait on the monitor create() made, then read the task it names.
    result.wait(30)
    expect(not result.is_processing, "still processing")
    last = result.response
    task = result.get_task()
    expect(task.task_state == sushy.TaskState.COMPLETED, "TaskState %r" % task.json.get("TaskState"))
    text = "wait() ended on %d from %s; get_task(): %s %s %s" % (
        last.status_code, last.request.path_url, task.identity, task.task_state.value,
        task.task_status.value if task.task_status else None)
    # The URI a caller keeps is task_monitor_uri: read it later through a new monitor.
    later = _monitor(root, connector, result.task_monitor_uri)
    expect(not later.is_processing, "%s still answers 202" % result.task_monitor_uri)
    later_task = later.get_task()
    expect(later_task.task_state == sushy.TaskState.COMPLETED,
           "TaskState %r" % later_task.json.get("TaskState"))
    later_task.parse_messages()
    text += "; later get_task_monitor(%s).get_task(): %s, messages %s" % (
        result.task_monitor_uri, later_task.task_state.value,
        [(m.message_id, m.message) for m in later_task.messages])
    # The monitor named in the 202's Location answers the operation's own result once done.
    if location:
        monitor = _monitor(root, connector, location)
        answer = monitor.response
        expect(not monitor.is_processing, "%s still answers 202" % location)
        expect(answer.status_code in (200, 201, 204), "%s answered %d" % (location, answer.status_code))
        text += "; Location %s answers %d, Location %s" % (
            location, answer.status_code, answer.headers.get("Location"))
    return text


def _read_controller(machine_path, target):
    with open(machine_path) as handle:
        machine = json.load(handle)
    for controller in served_controllers(machine):
        if storage_id(controller) == target:
            return controller
    raise AssertionError("no controller %s in the machine file" % target)


def _new_volume(controller, disks):
    wanted = sorted(d["id"] for d in disks)
    for volume in controller.get("volumes", []):
        members = sorted(i for span in volume.get("spans", []) for i in span)
        if members == wanted:
            return volume
    return None


def _volume_on_disk(machine_path, target, disks):
    controller = _read_controller(machine_path, target)
    volume = _new_volume(controller, disks)
    expect(volume is not None, "no volume on disks %s in the machine file" % [d["id"] for d in disks])
    expect(str(volume.get("raid_level")) == "1", "raid_level %r" % volume.get("raid_level"))
    expect(volume.get("size_mb") == NEW_VOLUME_MIB, "size_mb %r" % volume.get("size_mb"))
    return "volume %s: raid_level %s, %d MiB, spans %s, name %r" % (
        volume["id"], volume["raid_level"], volume["size_mb"], volume["spans"], volume.get("name"))


def _volume_listed(system, target, disks):
    # New objects, not refreshed ones: sushy's refresh() keeps the get_members() list it cached
    # first, so a refreshed collection never shows a member added since.
    storage = None
    for path in system.storage.members_identities:
        if path.rsplit("/", 1)[-1] == target:
            storage = system.storage.get_member(path)
    expect(storage is not None, "no Storage %s" % target)
    paths = sorted(drive.path for drive in storage.drives
                   if disk_number(storage, drive) in [str(d["id"]) for d in disks])
    for volume in storage.volumes.get_members():
        members = sorted(link["@odata.id"].rstrip("/") for link in volume.json.get("Links", {}).get("Drives", []))
        if members == paths:
            expect(volume.raid_type == sushy.RAIDType.RAID1, "RAIDType %r" % volume.json.get("RAIDType"))
            expect(volume.capacity_bytes == NEW_VOLUME_MIB * MIB, "CapacityBytes %r" % volume.capacity_bytes)
            return "%s %s %d bytes" % (volume.path, volume.raid_type.value, volume.capacity_bytes)
    raise AssertionError("no volume on %s in %s" % (paths, storage.volumes.path))


def _create_blocking(system, target, disks, exchanges, machine_path):
    storage = _find_storage(system, target)
    result = storage.volumes.create(_payload(storage, disks, "sushy_r1_now"),
                                    apply_time=sushy.ApplyTime.IMMEDIATE, timeout=30)
    post = exchanges.find("POST", storage.volumes.path)
    if post is not None:
        print_exchange("the blocking create request sushy sent", post)
    expect(_new_volume(_read_controller(machine_path, target), disks) is not None,
           "no volume on disks %s in the machine file" % [d["id"] for d in disks])
    return "returned %s" % (type(result).__name__ if result is not None else None)


def _reset(system):
    system.reset_system(sushy.ResetType.ON)
    return "accepted"


def main(argv):
    args = [a for a in argv[1:] if a != "-v"]
    if len(args) != 2:
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 2
    binary, machine = args
    for path, what in ((binary, "emulator binary"), (machine, "machine file")):
        if not os.path.isfile(path):
            print("FAIL %s: %s is not a file" % (what, path))
            return 2
    return run(binary, machine, "-v" in argv[1:])


if __name__ == "__main__":
    sys.exit(main(sys.argv))
