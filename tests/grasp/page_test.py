"""The page of a grasp in a browser: it draws, turns, follows its switches and keys, says what
there is to say, stands without WebGL, and leaves no error in the browser's log.

The program write_pages is the one argument. Chromium and its driver must be there.
"""

import json
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.actions.wheel_input import ScrollOrigin
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

WRITER = ""
NASTY = ("</script><b onclick='x'>\"bold\"</b> <!-- & {{style}} \\ \u2028 \N{PINCHING HAND} "
         "\u0627\u0628")

# Of a picture: how many colours, and how many pixels are as red as forces, as blue as cones
# and as dark as contacts. The browser decodes it.
LOOK = """
const [png, done] = arguments;
const image = new Image();
image.onload = () => {
  const canvas = document.createElement("canvas");
  [canvas.width, canvas.height] = [image.width, image.height];
  const context = canvas.getContext("2d");
  context.drawImage(image, 0, 0);
  const data = context.getImageData(0, 0, image.width, image.height).data;
  const colours = new Set();
  const seen = { red: 0, blue: 0, dark: 0 };
  for (let i = 0; i < data.length; i += 4) {
    const [r, g, b] = [data[i], data[i + 1], data[i + 2]];
    colours.add((r << 16) | (g << 8) | b);
    if (r > 1.8 * g && r > 1.8 * b && r > 120) ++seen.red;
    if (b > r + 40 && b > g + 15) ++seen.blue;
    if (r < 50 && g < 50 && b < 50) ++seen.dark;
  }
  done({ ...seen, colours: colours.size });
};
image.onerror = () => done(null);
image.src = "data:image/png;base64," + png;
"""

LABELS = """
return [...document.querySelectorAll("#labels span")].filter((one) => !one.hidden).map((one) => {
  const box = one.getBoundingClientRect();
  return { text: one.textContent, kind: one.className, left: box.left, right: box.right,
           top: box.top, bottom: box.bottom };
});
"""

# Of each arrow where it begins, its direction and its length.
ARROWS = """
return graspView.groups[arguments[0]].children.map((arrow) => ({
  at: arrow.position.toArray(),
  direction: new THREE.Vector3(0, 1, 0).applyQuaternion(arrow.quaternion).toArray(),
  length: arrow.children.reduce((sum, part) => sum + part.geometry.parameters.height, 0),
}));
"""

CONES = """
return graspView.groups.cones.children.map((cone) => cone.children[0].geometry.parameters)
  .map(({ radius, height }) => ({ radius, height }));
"""

# How many points the lines have that the object is drawn with.
LINES = """
const counts = [];
graspView.groups.object.traverse((one) => {
  if (one.isLine) counts.push(one.geometry.attributes.position.count);
});
return counts;
"""


def browser(*arguments):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    # The page is our own, and the superuser of a build machine gets no sandbox.
    for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage",
                     "--window-size=760,760", *arguments):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


class Pages(unittest.TestCase):
    ARGUMENTS = ()

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        subprocess.run([WRITER, folder.name], check=True)
        cls.driver = browser(*cls.ARGUMENTS)
        cls.addClassCleanup(cls.driver.quit)

    def open(self, name):
        self.driver.get((self.folder / f"{name}.html").as_uri())
        WebDriverWait(self.driver, 20).until(lambda driver: self.run_script("return !!window.graspView"))

    def tearDown(self):
        errors = [entry for entry in self.driver.get_log("browser") if entry["level"] == "SEVERE"]
        self.assertEqual(errors, [])

    def run_script(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def text(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector).text

    def table(self):
        return self.run_script("return [...document.querySelectorAll('#contacts tbody tr')]"
                               ".map((row) => [...row.cells].map((cell) => cell.textContent));")


class PageTest(Pages):
    # WebGL without a graphics card, and the rest of the page without that detour.
    ARGUMENTS = ("--use-angle=swiftshader", "--enable-unsafe-swiftshader", "--disable-gpu-compositing")

    def canvas(self):
        return self.driver.find_element(By.ID, "canvas")

    def camera(self):
        return self.run_script("return graspView.camera")

    def drawn(self):
        """Waits until what was asked for is drawn."""
        self.driver.execute_async_script(
            "const done = arguments[0];"
            "requestAnimationFrame(() => requestAnimationFrame(() => requestAnimationFrame(done)))")

    def picture(self):
        self.drawn()
        return self.canvas().screenshot_as_base64

    def look(self):
        seen = self.driver.execute_async_script(LOOK, self.picture())
        self.assertIsNotNone(seen)
        return seen

    def switch(self, name):
        self.driver.find_element(By.NAME, name).click()
        self.drawn()

    def labels(self):
        return self.run_script(LABELS)

    def texts(self):
        return sorted(label["text"] for label in self.labels())

    def assert_close(self, one, other):
        self.assertEqual(len(one), len(other))
        for a, b in zip(one, other):
            self.assertAlmostEqual(a, b, 5)

    def assert_apart(self, labels):
        for i, one in enumerate(labels):
            for other in labels[:i]:
                self.assertFalse(one["left"] < other["right"] - 0.5 and other["left"] < one["right"] - 0.5 and
                                 one["top"] < other["bottom"] - 0.5 and other["top"] < one["bottom"] - 0.5,
                                 f"{one} and {other}")

    def test_draws_everything_and_follows_its_switches(self):
        self.open("pinch")
        self.assertEqual(self.run_script("return graspView.counts"),
                         {"contacts": 2, "normals": 2, "cones": 2, "forces": 2, "object": 1})
        self.switch("labels")
        self.assertEqual(self.labels(), [])
        everything = self.look()
        self.assertGreater(everything["colours"], 500)
        for colour in ("red", "blue", "dark"):
            self.assertGreater(everything[colour], 300, colour)
        self.switch("forces")
        without_forces = self.look()
        self.assertEqual(without_forces["red"], 0)
        self.assertGreater(without_forces["blue"], 300)
        self.switch("cones")
        self.assertLess(self.look()["blue"], without_forces["blue"] / 10)
        for name in ("object", "normals"):
            before = self.picture()
            self.switch(name)
            self.assertNotEqual(self.picture(), before, name)
        self.switch("labels")
        self.assertNotIn("12.7\u00a0N", self.texts())

    def test_labels_what_it_draws_and_keeps_labels_apart(self):
        self.open("pinch")
        self.assertEqual(self.texts(), sorted(["thumb", "index", "12.7\u00a0N", "12.7\u00a0N", "centre",
                                               "x", "y", "z", "20\u00a0mm"]))
        self.open("box")
        self.assertEqual([text for text in self.texts() if "N" in text],
                         ["10.4\u00a0N", "10.4\u00a0N", "20\u00a0N", "6\u00a0N", "6\u00a0N"])
        for _ in range(6):
            self.assert_apart(self.labels())
            self.canvas().send_keys(Keys.ARROW_RIGHT * 7, Keys.ARROW_UP)
            self.drawn()

    def test_turns_with_the_mouse_and_labels_follow(self):
        self.open("box")
        start, picture, labels = self.camera(), self.picture(), self.labels()
        ActionChains(self.driver, 50).drag_and_drop_by_offset(self.canvas(), 150, 40).perform()
        self.drawn()
        turned = self.camera()
        self.assertGreater(math.dist(start, turned), 0.5)
        self.assertAlmostEqual(math.hypot(*start), math.hypot(*turned), 5)
        self.assertNotEqual(self.picture(), picture)
        before = {label["text"]: label for label in labels}
        for label in self.labels():
            if label["kind"] == "contact":
                old = before[label["text"]]
                self.assertGreater(math.dist((label["left"], label["top"]), (old["left"], old["top"])), 2)

        origin = ScrollOrigin.from_element(self.canvas())
        ActionChains(self.driver, 50).scroll_from_origin(origin, 0, -200).perform()
        self.drawn()
        self.assertLess(math.hypot(*self.camera()), 0.99 * math.hypot(*start))

        ActionChains(self.driver, 50).double_click(self.canvas()).perform()
        self.drawn()
        self.assert_close(self.camera(), start)

    def test_turns_and_zooms_with_keys(self):
        self.open("pinch")
        start = self.camera()
        canvas = self.canvas()
        for key, back in ((Keys.ARROW_RIGHT, Keys.ARROW_LEFT), (Keys.ARROW_UP, Keys.ARROW_DOWN), ("+", "-")):
            canvas.send_keys(key * 3)
            self.drawn()
            self.assertGreater(math.dist(self.camera(), start), 0.3)
            canvas.send_keys(back * 3)
            self.drawn()
            self.assert_close(self.camera(), start)
        canvas.send_keys(Keys.ARROW_UP * 20)
        self.assertTrue(all(map(math.isfinite, self.camera())))
        canvas.send_keys("0")
        self.assert_close(self.camera(), start)

    def test_draws_cones_and_forces_to_scale(self):
        self.open("box")
        cones = self.run_script(CONES)
        self.assert_close([cone["radius"] / cone["height"] for cone in cones], [0.8, 0.8, 0.8, 0.4])
        self.assert_close([math.hypot(cone["radius"], cone["height"]) for cone in cones], [0.3] * 4)
        forces = self.run_script(ARROWS, "forces")
        newtons = [(20, 0, 0), (-10, 3, 0), (-10, -3, 0), (0, 0, 6), (0, 0, -6)]
        scale = forces[0]["length"] / 20
        for arrow, force in zip(forces, newtons, strict=True):
            self.assertAlmostEqual(arrow["length"], scale * math.hypot(*force), 5)
            self.assert_close(arrow["direction"], [part / math.hypot(*force) for part in force])
        size = math.hypot(0.06, 0.045, 0.03)
        self.assert_close(forces[1]["at"], [0.06 / size, 0.02 / size, 0])
        normals = self.run_script(ARROWS, "normals")
        self.assert_close(normals[5]["direction"], [0, -1, 0])

    def test_draws_hulls_of_any_points(self):
        circle, outline, edges = 97, 5, 24
        for name, lines in (("grid", [edges]), ("flat", [outline]), ("segment", [2]), ("dot", []),
                            ("sphere", [circle] * 3)):
            with self.subTest(name):
                self.open(name)
                self.assertEqual(self.run_script(LINES), lines)
        self.open("cloud")
        count, = self.run_script(LINES)
        self.assertGreater(count, 200)

    def test_looks_the_same_at_any_scale(self):
        looks = {}
        for name, unit in (("pinch", "20\u00a0mm"), ("tiny", "20\u00a0\u00b5m"), ("huge", "200\u00a0m")):
            self.open(name)
            self.assertIn(unit, self.texts())
            self.switch("labels")
            looks[name] = self.look()
        for name in ("tiny", "huge"):
            for colour in ("red", "blue", "dark"):
                self.assertAlmostEqual(looks[name][colour] / looks["pinch"][colour], 1, 1, f"{name} {colour}")

    def test_shows_what_is_known_without_forces_and_loads_nothing(self):
        self.open("infeasible")
        self.assertEqual(self.text("#verdict"),
                         "INFEASIBLE no forces inside the friction cones are in balance")
        loaded = self.run_script("return performance.getEntriesByType('resource').map((e) => e.name)")
        self.assertEqual(loaded, [])
        self.assertEqual(self.table(), [["left", "friction", "0.1", "\u22120.02", "0.00", "0.00"],
                                        ["right", "friction", "0.1", "0.02", "0.00", "0.00"]])
        self.assertFalse(self.driver.find_element(By.NAME, "forces").is_displayed())
        self.switch("labels")
        seen = self.look()
        self.assertEqual(seen["red"], 0)
        self.assertGreater(seen["colours"], 200)
        self.open("single")
        self.assertEqual(self.texts(), sorted(["0", "centre", "x", "y", "z", "20\u00a0mm"]))
        self.assertGreater(self.look()["blue"], 300)

    def test_draws_without_a_centre_that_is_far_away(self):
        self.open("far_centre")
        self.assertNotIn("centre", self.texts())
        self.assertIn("too far away", self.text("#scale"))
        self.assertGreater(self.look()["red"], 300)

    def test_shows_forces_and_margins_in_a_table(self):
        self.open("box")
        self.assertEqual(self.text("#name"), "Box in a hand")
        self.assertEqual(self.driver.title, "Box in a hand")
        self.assertEqual(self.text("#verdict"), "FEASIBLE")
        self.assertEqual(self.text("#question"),
                         "The largest mean force on thumb, 4: objective 16 N, mean margin 16 N")
        self.assertEqual(self.text("#notes"), "The forces are not the only ones that are best.")
        rows = self.table()
        self.assertEqual([row[0] for row in rows], ["thumb", "index", "middle", "table", "4", "idle"])
        self.assertEqual(rows[1][1:], ["friction", "0.8", "10.44", "3.00", "0.00", "10.00", "\u221210.00",
                                       "3.00", "0.00", "5.00", "10", "5"])
        self.assertEqual(rows[5][10:], ["0.00", "\u2013", "0"])
        self.assertEqual(rows[3][1:7], ["frictionless", "\u2013", "6.00", "\u2013", "\u2013", "6.00"])

    def test_shows_names_as_they_are_also_without_a_hull(self):
        self.open("nasty")
        self.assertEqual(self.run_script("return graspView.counts.object"), 0)
        content = "return document.querySelector(arguments[0]).textContent"
        for selector in ("#name", "#verdict span", "#notes li", "#contacts tbody th", "#labels .contact"):
            self.assertEqual(self.run_script(content, selector), NASTY, selector)
        self.assertEqual(self.run_script("return document.querySelectorAll('b, [onclick]').length"), 0)
        self.assertGreater(self.look()["red"], 300)

    def test_stays_usable_with_many_contacts_and_in_a_narrow_window(self):
        self.open("crowd")
        self.assert_apart(self.labels())
        self.assertEqual(self.texts().count("2\u00a0N"), 16)
        width = self.driver.get_window_size()["width"]
        self.driver.set_window_size(500, 760)
        self.drawn()
        canvas = self.canvas()
        self.assertEqual(self.run_script("return [canvas.width, canvas.height]"),
                         [canvas.size["width"], canvas.size["height"]])
        self.assertGreater(self.look()["red"], 300)
        self.driver.set_window_size(width, 760)


class WithoutWebglTest(Pages):
    ARGUMENTS = ("--disable-3d-apis",)

    def test_says_so_and_keeps_the_table(self):
        self.open("pinch")
        self.assertIn("no WebGL", self.text("#message"))
        self.assertTrue(self.driver.find_element(By.ID, "message").is_displayed())
        self.assertFalse(self.driver.find_element(By.ID, "canvas").is_displayed())
        self.assertEqual(self.text("#verdict"), "FEASIBLE")
        self.assertEqual([row[0] for row in self.table()], ["thumb", "index"])


if __name__ == "__main__":
    WRITER = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main()
