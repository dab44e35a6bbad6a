# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Shows the program at work, without a display or anybody's hands.

Makes rolls of sample scans, opens the real window on a virtual desktop, drags the rolls onto
it and presses its buttons. Leaves a picture of every screen in a folder, and prints the tags
that the scans carry afterwards.
"""

import argparse
import pathlib
import shutil
import subprocess
import sys

from harness import rolls, tags
from harness.case import shared_desktop
from harness.drag import drop_files, file_drag
from harness.program import Program
from harness.waiting import WORK_DEADLINE, wait_until

EMBED = "EMBED METADATA  →"
ANOTHER = "INGEST ANOTHER  →"
PAYLOAD = {**rolls.PAYLOAD, "project": "Harbour lights", "notes": "Fog at dawn; first light 5:40",
           "location": "Grünerløkka, Oslo", "roll_name": "Harbour 12"}
TYPED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
         "ISO *": "400", "PROJECT": "Harbour lights"}


class Demo:
    def __init__(self, pictures):
        self.pictures = pictures
        self.desktop = shared_desktop()
        self.screen = self.desktop.screen
        self.work = self.desktop.folder("demo")
        self.program = None

    def say(self, text):
        print(f"demo: {text}", flush=True)

    def show(self, name):
        """Saves a picture of the window."""
        self.program.picture(self.pictures / f"{name}.png")
        self.say(f"saved {name}.png")

    def show_if_still(self, name, text):
        """Saves a picture of a screen that goes by itself, should it stay that long."""
        file = self.pictures / f"{name}.png"
        texts = wait_until(self.program.texts, "the next screen")
        if text in texts:
            self.program.picture(file)
            if text in self.program.texts():
                self.say(f"saved {name}.png")
                return
            file.unlink()
        self.say(f"no {name}.png: that screen was gone too soon")

    def run(self):
        self.say("making a roll of 24-megapixel frames with the slate second, and one without")
        roll = self.make_roll("Harbour 12", 6, 2, "--megapixels", "24", "--format", "mixed")
        blank = self.make_roll("Blank 3", 2, 0)
        self.say("opening the window")
        self.program = Program(self.desktop)
        self.show("idle")
        originals = rolls.checksums(rolls.frames(roll))
        self.ingest(roll)
        self.check(roll, originals)
        self.program.press(ANOTHER)
        self.enter_manually(blank)
        self.program.press(ANOTHER)
        self.fail_on(self.desktop.folder("empty"))
        self.program.close_window()
        return self.program.wait_for_end()

    def make_roll(self, name, frames, slate_at, *options):
        return rolls.make_roll(self.work / name, frames, slate_at, *options, payload=PAYLOAD)

    def ingest(self, roll):
        self.say(f"dragging {roll.name} onto the window")
        x, y, width, height = self.screen.geometry(self.program.window)
        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(x + width // 2, y + height // 2)
            wait_until(lambda: drag.is_accepted, "the window to take the drag")
            self.show("hovered")
            drag.drop()
        self.show_if_still("scanning", "SCANNING")
        self.program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.show("plan")
        self.say(f"pressing {EMBED}")
        self.program.press(EMBED)
        self.show_if_still("writing", "EMBEDDING")
        self.program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        self.show("done")

    def enter_manually(self, roll):
        self.say(f"dragging {roll.name}, which has no slate")
        drop_files(self.screen, self.program.window, roll)
        self.program.wait_for("02 / SLATE NOT FOUND", WORK_DEADLINE)
        self.show("detection-failed")
        self.program.press("PICK SLATE FRAME")
        self.program.find("Use as slate")
        self.show("chooser")
        self.program.choose("Use as slate", roll / "frame-01.jpg")
        self.program.wait_for("02 / MANUAL ENTRY", WORK_DEADLINE)
        self.show("manual-entry-empty")
        for name, text in TYPED.items():
            self.program.type_into(name, text)
        self.show("manual-entry")
        self.program.press(EMBED)
        self.program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)

    def fail_on(self, folder):
        self.say("dragging an empty folder")
        drop_files(self.screen, self.program.window, folder)
        self.program.wait_for("INGESTION FAILED", WORK_DEADLINE)
        self.show("error")
        self.program.press("TRY AGAIN")
        self.program.wait_for("01 / INGEST A ROLL")

    def check(self, roll, originals):
        """Prints what the frames carry now; ends the demo where they do not carry it all."""
        files = rolls.frames(roll)
        self.say(f"exiftool -G1 -a -s {files[0].name}")
        subprocess.run(["exiftool", "-G1", "-a", "-s", files[0]], check=True)
        wanted = tags.expected_tags(PAYLOAD)
        for found in tags.read_tags(files):
            present = sum(found.get(name) == value for name, value in wanted.items())
            own = sum(name.startswith("XMP-quillmark:") for name in found)
            name = pathlib.Path(found["SourceFile"]).name
            self.say(f"{name}: {present} of the {len(wanted)} tags that the slate asks for; "
                     f"the group XMP-quillmark holds {own}")
            if present != len(wanted):
                sys.exit(f"demo: {name} lacks tags")
        if rolls.checksums(rolls.frames(roll / "_originals")) != originals:
            sys.exit("demo: the backups differ from the originals")
        self.say(f"{len(originals)} backups in _originals are the originals, byte for byte")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("pictures", type=pathlib.Path, help="the folder for the pictures")
    pictures = parser.parse_args().pictures
    shutil.rmtree(pictures, ignore_errors=True)
    pictures.mkdir(parents=True)
    status = Demo(pictures).run()
    if status != 0:
        sys.exit(f"demo: the program ended with {status}")
    print(f"demo: done; {len(list(pictures.glob('*.png')))} pictures are in {pictures}")


if __name__ == "__main__":
    main()
