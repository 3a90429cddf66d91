# Makes the collection importable as ansible_collections.raidcfg.fleet straight from the
# repository, so the unit tests need no installed copy.
import os
import sys
import tempfile

_ROOT = tempfile.mkdtemp(prefix="raidcfg-fleet-tests-")
_PLACE = os.path.join(_ROOT, "ansible_collections", "raidcfg")
os.makedirs(_PLACE)
os.symlink(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), os.path.join(_PLACE, "fleet"))
sys.path.insert(0, _ROOT)
