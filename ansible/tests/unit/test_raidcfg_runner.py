# The modules' argument handling and the parts they share, without a BMC.
import os

import pytest

from ansible_collections.raidcfg.fleet.plugins.module_utils import raidcfg_runner as runner

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))))


def params(**given):
    base = dict(bmc="10.0.0.7:8443", user="admin", password="secret", http=False,
                validate_certs=True, ca_path=None, timeout=None, cfc=False, raidcfg_path="raidcfg")
    base.update(given)
    return base


def test_the_bmc_and_user_go_on_the_command_line_and_the_password_never_does():
    args = runner.connection_args(params())
    assert args == ["--bmc", "10.0.0.7:8443", "--user", "admin"]
    assert "secret" not in " ".join(args)


def test_http_insecure_and_a_ca_file_take_their_options_one_at_a_time():
    assert runner.connection_args(params(http=True))[-1] == "--http"
    assert runner.connection_args(params(validate_certs=False))[-1] == "--insecure"
    assert runner.connection_args(params(ca_path="/etc/bmc.pem"))[-2:] == ["--cacert", "/etc/bmc.pem"]
    # Plain HTTP has no certificate to check.
    assert "--insecure" not in runner.connection_args(params(http=True, validate_certs=False))


def test_timeout_and_cfc_are_passed_and_a_bad_timeout_is_refused():
    assert runner.connection_args(params(timeout=20, cfc=True))[-3:] == ["--timeout", "20", "--cfc"]
    with pytest.raises(ValueError):
        runner.connection_args(params(timeout=0))


def test_the_connection_options_have_the_names_scripts_use():
    assert sorted(runner.CONNECTION_ARGS) == sorted(
        ["bmc", "user", "password", "http", "validate_certs", "ca_path", "timeout", "cfc",
         "raidcfg_path"])
    assert runner.CONNECTION_ARGS["password"]["no_log"] is True
    assert runner.CONNECTION_ARGS["validate_certs"]["default"] is True
    assert runner.CONNECTION_ARGS["http"]["default"] is False
    assert runner.CONNECTION_ARGS["raidcfg_path"]["default"] == "raidcfg"


def test_the_result_line_is_raidcfgs_last_line():
    assert runner.result_line("row\n\n12 Authentication failed.\n") == "12 Authentication failed."
    assert runner.result_line("") == ""


def test_the_controllers_a_policy_names_and_their_numbers():
    text = "[ctrl1-vol0]\ndisks=0\n[ctrl1]\nglobal_hot_spares=5\n[ctrl4-vol0]\nraid_level=1\n"
    assert runner.named_controllers(text) == ["ctrl1", "ctrl4"]
    assert runner.controller_number("ctrl4") == 4
    assert runner.controller_number("m2-0") is None


def test_add_gets_only_what_is_missing():
    text = ("[ctrl1-vol0]\n    disks=0,1\n    raid_level=1\n"
            "[ctrl1-vol1]\n    disks=6,7\n    raid_level=1\n"
            "[ctrl1]\n    global_hot_spares=5,8\n")
    differences = [
        {"kind": "create", "section": "ctrl1-vol1", "controller": "ctrl1", "details": []},
        {"kind": "hot_spares", "section": "ctrl1", "controller": "ctrl1", "details": [],
         "missing": ["8"], "extra": []},
    ]
    assert runner.missing_part(text, differences) == (
        "[ctrl1-vol1]\n    disks=6,7\n    raid_level=1\n"
        "[ctrl1]\n    global_hot_spares=8\n")


def test_facts_hold_every_controller_with_its_disks_volumes_and_hot_spares():
    path = os.path.join(REPOSITORY, "tests", "e2e", "golden", "oob_show_demo.xml")
    controllers = runner.controllers_of(path)
    assert [c["ControllerID"] for c in controllers] == ["1", "2", "3", "4"]
    lsi = controllers[0]
    assert lsi["ProductName"] == "RAID 945-16i"
    assert sorted(int(d["DiskID"]) for d in lsi["disks"]) == list(range(9))
    assert [v["Name"] for v in lsi["volumes"]] == ["vd0"]
    assert lsi["hot_spares"] == [{"disk": "4", "type": "dedicated"}, {"disk": "5", "type": "global"}]


def _documentation(path):
    import ast

    import yaml

    with open(path) as source:
        tree = ast.parse(source.read())
    for node in ast.walk(tree):
        if isinstance(node, ast.Assign) and getattr(node.targets[0], "id", "") == "DOCUMENTATION":
            return yaml.safe_load(node.value.value)
    raise AssertionError("no DOCUMENTATION in " + path)


@pytest.mark.parametrize("module, own", [("raid_facts", []), ("raid_save", ["dest"]),
                                         ("raid_policy", ["policy_file", "replace", "state"])])
def test_every_module_documents_exactly_the_options_it_takes(module, own):
    plugins = os.path.join(REPOSITORY, "ansible", "plugins")
    documentation = _documentation(os.path.join(plugins, "modules", module + ".py"))
    import importlib.util

    spec = importlib.util.spec_from_file_location(
        "connection", os.path.join(plugins, "doc_fragments", "connection.py"))
    fragment = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(fragment)
    import yaml

    common = yaml.safe_load(fragment.ModuleDocFragment.DOCUMENTATION)["options"]
    assert documentation["extends_documentation_fragment"] == ["raidcfg.fleet.connection"]
    assert sorted(common) == sorted(runner.CONNECTION_ARGS)
    assert sorted(documentation.get("options") or {}) == sorted(own)
