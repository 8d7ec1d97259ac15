"""Starting: a second start, a missing store, a store that has not been set up."""

import sys

from road import equal, leave, site

with site() as here:
    with here.start() as first:
        first.dismiss_splash()
        before = here.store.stat().st_mtime_ns
        with here.start() as second:
            second.find("label", "Another instance of this program is already running")
            second.press(second.find("button", "OK"))
            second.ended()
        equal("the store's time", here.store.stat().st_mtime_ns, before)
        equal("exit status", leave(first), 0)

    here.change("update install_tbl set install=0")
    with here.start() as tessaly:
        tessaly.window("Tessaly Setup")
        equal("consoles", tessaly.all("frame", "Tessaly"), [])
        tessaly.keys("Escape", title="Tessaly Setup")
        equal("exit status when the setup is left", tessaly.ended(), 0)
    equal("still to be set up", here.rows("select install from install_tbl"), [(0,)])

    here.store.unlink()
    with here.start() as tessaly:
        tessaly.find("label", "Required Database file missing. Please make sure the files exists")
        tessaly.press(tessaly.find("button", "OK"))
        tessaly.ended()
    equal("a store made by the way", here.store.exists(), False)

    here.store.write_bytes(b"no store at all, but a file of that name. " * 100)
    with here.start() as tessaly:
        tessaly.find("label", lambda text: text.startswith("Tessaly cannot start: Unrecognized database format."))
        tessaly.press(tessaly.find("button", "OK"))
        equal("exit status with a damaged store", tessaly.ended(), 1)

sys.exit(0)
