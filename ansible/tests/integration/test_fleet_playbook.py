# Ansible for real: ansible-playbook with 8 forks applies one policy to 8 raidcfg-bmc emulators
# on loopback, each with its own machine file. RAIDCFG_BIN_DIR names the built programs and
# RAIDCFG_DEMO_MACHINE the demo machine file.
import json
import os
import re
import shutil
import signal
import subprocess
import time

import pytest

BIN = os.environ.get("RAIDCFG_BIN_DIR", "")
DEMO = os.environ.get("RAIDCFG_DEMO_MACHINE", "")
COLLECTION = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SERVERS = 8
FLEET_VOLUME = ("[ctrl1-vol1]\n    disks=6,7\n    raid_level=1\n    vol_name=fleet\n"
                "    volume_size=100GB\n")



def setup_module():
    assert BIN and DEMO, "RAIDCFG_BIN_DIR and RAIDCFG_DEMO_MACHINE name the programs under test"
    assert shutil.which("ansible-playbook"), "ansible-playbook (Debian's ansible-core) is needed"


class Emulator:
    def __init__(self, directory, index, latency_ms=0):
        self.machine = os.path.join(directory, "m%d.json" % index)
        self.log = os.path.join(directory, "requests%d.log" % index)
        port_file = os.path.join(directory, "port%d" % index)
        shutil.copyfile(DEMO, self.machine)
        self.process = subprocess.Popen(
            [os.path.join(BIN, "raidcfg-bmc"), "--machine", self.machine, "--port-file", port_file,
             "--log-requests", self.log, "--latency-ms", str(latency_ms)],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.time() + 15
        while not os.path.exists(port_file) and time.time() < deadline:
            time.sleep(0.02)
        with open(port_file) as port:
            self.port = int(port.read().strip())

    def stop(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            self.process.wait(timeout=10)

    def writes(self):
        """The write requests the emulator served, log-in and log-out left out."""
        if not os.path.exists(self.log):
            return []
        with open(self.log) as log:
            return [line for line in log.read().splitlines()
                    if line.split(" ")[0] in ("POST", "PATCH", "DELETE", "PUT")
                    and "/SessionService/Sessions" not in line]


@pytest.fixture
def fleet(tmp_path):
    collections = tmp_path / "collections"
    subprocess.run(["ansible-galaxy", "collection", "install", COLLECTION, "-p", str(collections)],
                   check=True, capture_output=True)
    emulators = [Emulator(str(tmp_path), i) for i in range(SERVERS)]
    # The policy: the demo's LSI controller as saved, and one more volume on its free disks.
    subprocess.run([os.path.join(BIN, "raidcfg"), "save", "--ctrl", "1", "--file", "policy.ini",
                    "--machine", emulators[0].machine, "--bmc", "admin:secret@sim", "-q"],
                   cwd=str(tmp_path), check=True, capture_output=True)
    with open(tmp_path / "policy.ini", "a") as policy:
        policy.write("\n" + FLEET_VOLUME)
    yield tmp_path, emulators, collections
    for emulator in emulators:
        emulator.stop()


def play(tmp_path, collections, emulators, extra=(), replace=False, tasks=None, during=None):
    """Runs the playbook (raid_policy, or the tasks given) over every emulator; {host: recap
    counts} and the output. during, when given, is called while the play runs."""
    with open(tmp_path / "inventory.ini", "w") as inventory:
        inventory.write("[servers]\n")
        for i, emulator in enumerate(emulators):
            inventory.write("srv%d bmc=127.0.0.1:%d\n" % (i, emulator.port))
        inventory.write("[servers:vars]\nansible_connection=local\n"
                        "ansible_python_interpreter=/usr/bin/python3\n")
    if tasks is None:
        tasks = """    - raidcfg.fleet.raid_policy:
        bmc: "{{ bmc }}"
        user: admin
        password: secret
        http: true
        policy_file: %s
        replace: %s
        raidcfg_path: %s
""" % (tmp_path / "policy.ini", "true" if replace else "false", os.path.join(BIN, "raidcfg"))
    with open(tmp_path / "play.yml", "w") as playbook:
        playbook.write("- hosts: servers\n  gather_facts: false\n  tasks:\n" + tasks)
    env = dict(os.environ, ANSIBLE_COLLECTIONS_PATH=str(collections), ANSIBLE_NOCOLOR="1",
               ANSIBLE_HOST_KEY_CHECKING="0", ANSIBLE_LOCAL_TEMP=str(tmp_path / "tmp"))
    process = subprocess.Popen(
        ["ansible-playbook", "-i", str(tmp_path / "inventory.ini"), "-f", "8",
         str(tmp_path / "play.yml")] + list(extra),
        env=env, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, cwd=str(tmp_path))
    if during is not None:
        during()
    stdout, stderr = process.communicate(timeout=600)
    recap = {}
    for host, counts in re.findall(r"^(srv\d+)\s*:\s*(.*)$", stdout, re.M):
        recap[host] = dict((k, int(v)) for k, v in re.findall(r"(\w+)=(\d+)", counts))
    return recap, stdout + stderr


def volumes(emulator):
    with open(emulator.machine) as machine:
        data = json.load(machine)
    for controller in data["controllers"]:
        if controller["family"] == "OOB_LSI":
            return [(v["name"], v["raid_level"], v["spans"]) for v in controller["volumes"]]
    return []


def test_first_run_changes_every_server_and_the_second_sends_no_write(fleet):
    tmp_path, emulators, collections = fleet
    recap, output = play(tmp_path, collections, emulators)
    assert len(recap) == SERVERS, output
    for host, counts in recap.items():
        assert counts["changed"] == 1 and counts["failed"] == 0, (host, output)
    for emulator in emulators:
        assert ("fleet", "1", [[6, 7]]) in volumes(emulator)
    written = [len(emulator.writes()) for emulator in emulators]
    recap, output = play(tmp_path, collections, emulators)
    for host, counts in recap.items():
        assert counts["changed"] == 0 and counts["ok"] == 1 and counts["failed"] == 0, (host, output)
    # No write request on the second run.
    assert [len(emulator.writes()) for emulator in emulators] == written
    assert "secret" not in output


def test_check_mode_reports_a_change_and_changes_no_machine_file(fleet):
    tmp_path, emulators, collections = fleet
    before = [open(emulator.machine, "rb").read() for emulator in emulators]
    recap, output = play(tmp_path, collections, emulators, extra=["--check", "--diff"])
    for host, counts in recap.items():
        assert counts["changed"] == 1 and counts["failed"] == 0, (host, output)
    assert [open(emulator.machine, "rb").read() for emulator in emulators] == before
    assert all(emulator.writes() == [] for emulator in emulators)
    assert "ctrl1-vol1: create" in output


def test_a_bmc_stopped_mid_play_fails_its_host_with_raidcfgs_message_and_others_complete(fleet):
    tmp_path, emulators, collections = fleet
    # A slow BMC, stopped once the play has reached it.
    emulators[3].stop()
    emulators[3] = Emulator(str(tmp_path), 3, latency_ms=300)

    def stop_when_reached():
        deadline = time.time() + 60
        while time.time() < deadline:
            if os.path.exists(emulators[3].log) and os.path.getsize(emulators[3].log) > 0:
                break
            time.sleep(0.02)
        emulators[3].stop()

    recap, output = play(tmp_path, collections, emulators, during=stop_when_reached)
    assert recap["srv3"]["failed"] == 1, output
    assert re.search(r"srv3.*failed: \d+ ", output), output
    assert "Traceback" not in output
    for host, counts in recap.items():
        if host != "srv3":
            assert counts["changed"] == 1 and counts["failed"] == 0, (host, output)


def test_volumes_in_the_way_fail_unless_replace_which_ends_with_exactly_the_policy(fleet):
    tmp_path, emulators, collections = fleet
    one = emulators[:1]
    # Another layout on the free disks: a RAID 0 on disk 6.
    with open(tmp_path / "other.ini", "w") as other:
        other.write("[ctrl1-vol1]\n    disks=6\n    raid_level=0\n    vol_name=other\n"
                    "    volume_size=100GB\n")
    subprocess.run([os.path.join(BIN, "raidcfg"), "add", "--file", "other.ini", "-y",
                    "--machine", one[0].machine, "--bmc", "admin:secret@sim", "-q"],
                   capture_output=True, cwd=str(tmp_path), check=True)
    recap, output = play(tmp_path, collections, one)
    assert recap["srv0"]["failed"] == 1, output
    assert "volumes are in the way" in output
    recap, output = play(tmp_path, collections, one, replace=True)
    assert recap["srv0"]["changed"] == 1 and recap["srv0"]["failed"] == 0, output
    diff = subprocess.run([os.path.join(BIN, "raidcfg"), "diff", "--file", "policy.ini",
                           "--machine", one[0].machine, "--bmc", "admin:secret@sim"],
                          capture_output=True, text=True, cwd=str(tmp_path))
    assert diff.returncode == 0, diff.stdout
    assert ("other", "0", [[6]]) not in volumes(one[0])


def test_save_clones_the_reference_and_facts_describe_it(fleet):
    tmp_path, emulators, collections = fleet
    one = emulators[:1]
    dest = tmp_path / "cloned.ini"
    tasks = """    - raidcfg.fleet.raid_save:
        bmc: "{{ bmc }}"
        user: admin
        password: secret
        http: true
        dest: %s
        raidcfg_path: %s
    - raidcfg.fleet.raid_facts:
        bmc: "{{ bmc }}"
        user: admin
        password: secret
        http: true
        raidcfg_path: %s
    - debug:
        msg: "controllers={{ raid_controllers | length }} first={{ raid_controllers[0].ProductName }}"
""" % (dest, os.path.join(BIN, "raidcfg"), os.path.join(BIN, "raidcfg"))
    recap, output = play(tmp_path, collections, one, tasks=tasks)
    assert recap["srv0"]["changed"] == 1 and recap["srv0"]["failed"] == 0, output
    assert "controllers=4 first=RAID 945-16i" in output
    with open(dest) as cloned:
        assert cloned.read().startswith("[ctrl1-vol0]\n")
    recap, output = play(tmp_path, collections, one, tasks=tasks)
    assert recap["srv0"]["changed"] == 0 and recap["srv0"]["failed"] == 0, output
