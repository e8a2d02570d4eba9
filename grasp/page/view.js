// Camera, mouse, keys and switches. Tests look at what is drawn through window.graspView.
const FIELD = Math.PI / 6;
const START = new THREE.Vector3(1.9, -3.3, 1.9);

function has_webgl() {
  const canvas = document.createElement("canvas");
  return Boolean(canvas.getContext("webgl"));
}

function show_message(text) {
  const message = document.getElementById("message");
  message.textContent = text;
  message.hidden = false;
  document.getElementById("canvas").hidden = true;
  document.getElementById("key").hidden = true;
  window.graspView = { message: text };
}

/// Turns the camera around its target as far as the poles, which the controls keep.
function turn(camera, target, sideways, upwards) {
  const level = new THREE.Quaternion().setFromUnitVectors(camera.up, UP);
  const offset = camera.position.clone().sub(target).applyQuaternion(level);
  const place = new THREE.Spherical().setFromVector3(offset);
  place.theta += sideways;
  place.phi += upwards;
  place.makeSafe();
  offset.setFromSpherical(place).applyQuaternion(level.inverse());
  camera.position.copy(target).add(offset);
}

function open_view(grasp) {
  const { groups, labels, counts, words } = build_scene(grasp);
  document.getElementById("scale").textContent = words;

  const canvas = document.getElementById("canvas");
  const view = document.getElementById("view");
  // What was drawn is kept for the printer.
  const renderer = new THREE.WebGLRenderer({ canvas, antialias: true, preserveDrawingBuffer: true });
  renderer.setClearColor(0xffffff);
  const scene = new THREE.Scene();
  scene.add(...Object.values(groups));
  scene.add(new THREE.HemisphereLight(0xffffff, 0x8a8f96, 0.75));
  const lamp = new THREE.DirectionalLight(0xffffff, 0.45);
  const camera = new THREE.PerspectiveCamera();
  camera.up.set(0, 0, 1);
  camera.position.copy(START).setLength(1.18 / Math.sin(FIELD / 2));
  lamp.position.set(-0.6, 0.8, 1);
  camera.add(lamp);
  scene.add(camera);

  const controls = new THREE.OrbitControls(camera, canvas);
  controls.enableKeys = false;
  controls.minDistance = 0.5;
  controls.maxDistance = 40;

  const text = new Labels(document.getElementById("labels"), labels);
  const switches = Object.fromEntries(
    [...document.querySelectorAll("#switches input")].map((input) => [input.name, input]));
  const shown = (group) => group === "always" || switches[group].checked;
  let frames = 0;
  let due = false;

  function draw() {
    due = false;
    for (const name of Object.keys(groups)) groups[name].visible = shown(name);
    renderer.render(scene, camera);
    text.place(camera, view.clientWidth, view.clientHeight,
      (group) => switches.labels.checked && shown(group));
    ++frames;
  }
  function draw_soon() {
    if (due) return;
    due = true;
    requestAnimationFrame(draw);
  }
  function fit() {
    const { clientWidth: width, clientHeight: height } = view;
    if (!width || !height) return;
    renderer.setPixelRatio(window.devicePixelRatio);
    renderer.setSize(width, height, false);
    camera.aspect = width / height;
    // In an upright view the width is what must suffice.
    const upright = 2 * Math.atan(Math.tan(FIELD / 2) / Math.min(1, camera.aspect));
    camera.fov = (upright * 180) / Math.PI;
    camera.updateProjectionMatrix();
    // A view that is emptied by its new size is filled before it is seen.
    draw();
  }
  function reset() {
    controls.reset();
    draw_soon();
  }

  const STEP = Math.PI / 36;
  const keys = {
    ArrowLeft: () => turn(camera, controls.target, -STEP, 0),
    ArrowRight: () => turn(camera, controls.target, STEP, 0),
    ArrowUp: () => turn(camera, controls.target, 0, -STEP),
    ArrowDown: () => turn(camera, controls.target, 0, STEP),
    "+": () => camera.position.sub(controls.target).multiplyScalar(1 / 1.1).add(controls.target),
    "-": () => camera.position.sub(controls.target).multiplyScalar(1.1).add(controls.target),
    0: () => controls.reset(),
  };
  keys["="] = keys["+"];
  canvas.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || !keys[event.key]) return;
    event.preventDefault();
    keys[event.key]();
    controls.update();
    draw_soon();
  });
  canvas.addEventListener("dblclick", reset);
  controls.addEventListener("change", draw_soon);
  for (const input of Object.values(switches)) input.addEventListener("change", draw_soon);
  canvas.addEventListener("webglcontextrestored", draw_soon);
  // What there is none of needs no switch.
  for (const name of ["object", "cones", "forces"]) {
    if (!counts[name]) switches[name].parentElement.hidden = true;
  }
  controls.update();
  controls.saveState();
  new ResizeObserver(fit).observe(view);
  fit();

  window.graspView = {
    counts,
    reset,
    get camera() { return camera.position.toArray(); },
    get frames() { return frames; },
  };
}

if (!has_webgl()) {
  show_message("This browser shows nothing in 3D (it has no WebGL). The table below holds the contacts and forces.");
} else {
  try {
    open_view(JSON.parse(document.getElementById("grasp").textContent));
  } catch (error) {
    show_message("The grasp could not be drawn in 3D. The table below holds the contacts and forces.");
    console.error(error);
  }
}
