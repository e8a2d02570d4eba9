// From the grasp to the things that are drawn.
//
// Lengths are divided by the grasp's own size before they reach the graphics: these count in
// single precision, and grasps are as small as a chip and as large as a house.
const LONGEST_FORCE = 0.6;
const CONE_SLANT = 0.3;
const COLOUR = {
  force: 0xc8281e, cone: 0x2468b2, normal: 0x333333, object: 0x9aa7b4, edge: 0x5f6b78,
  contact: 0x101418, axis: 0x777f88,
};

/// The box around contacts and object, and the centre unless it is so far away that the
/// rest would shrink to a dot: its middle, and the distance from there to the farthest point.
function measure(grasp) {
  const balls = grasp.contacts.map((contact) => [new THREE.Vector3(...contact.point), 0]);
  if (grasp.hull?.points) {
    for (const point of grasp.hull.points) balls.push([new THREE.Vector3(...point), 0]);
  } else if (grasp.hull) {
    balls.push([new THREE.Vector3(...grasp.hull.centre), grasp.hull.radius]);
  }
  const around = () => {
    const box = new THREE.Box3();
    for (const [point, radius] of balls) {
      for (const sign of [-1, 1]) box.expandByPoint(point.clone().addScalar(sign * radius));
    }
    const middle = box.getCenter(new THREE.Vector3());
    const distances = balls.map(([point, radius]) => point.distanceTo(middle) + radius);
    return { box, middle, size: Math.max(...distances) };
  };
  const centre = new THREE.Vector3(...grasp.centre);
  const without = around();
  if (without.size > 0 && centre.distanceTo(without.middle) > 3 * without.size) {
    return { ...without, has_centre: false };
  }
  balls.push([centre, 0]);
  const all = around();
  // A single contact at the centre has no size: some length has to be the unit.
  return { ...all, size: all.size > 0 ? all.size : 0.05, has_centre: true };
}

/// The largest of 1, 2 and 5 times a power of ten that is not above a length.
function round_length(length) {
  const power = 10 ** Math.floor(Math.log10(length));
  return [5, 2, 1].find((step) => step * power <= length * (1 + 1e-9)) * power;
}

function length_text(metres) {
  const [unit, name] = [[1, "m"], [1e-3, "mm"], [1e-6, "\u00b5m"]].find(([u]) => metres >= u * 0.999) ??
    [1e-6, "\u00b5m"];
  return `${Number((metres / unit).toPrecision(3))}\u00a0${name}`;
}

function force_text(newtons) {
  return `${Number(newtons.toPrecision(3))}\u00a0N`;
}

/// How long a newton is: the longest force gets a fixed length, or less where contacts are
/// so close that arrows of opposite ones would run into each other.
function newton(contacts, points) {
  const largest = Math.max(...contacts.map(({ force }) => (force ? Math.hypot(...force.world) : 0)));
  if (!(largest > 0)) return { newton: 0, largest: 0 };
  let nearest = Infinity;
  for (let i = 0; i < points.length && i < 100; ++i) {
    for (let j = 0; j < i; ++j) nearest = Math.min(nearest, points[i].distanceTo(points[j]));
  }
  const longest = Math.max(0.3, Math.min(LONGEST_FORCE, 0.42 * nearest));
  return { newton: longest / largest, largest };
}

/// @return groups by what can be switched on and off, labels (text, place, kind, group),
/// counts of what was drawn, and the words for the scale.
function build_scene(grasp) {
  const { box, middle, size, has_centre } = measure(grasp);
  const placed = (point) => new THREE.Vector3(...point).sub(middle).divideScalar(size);
  const points = grasp.contacts.map((contact) => placed(contact.point));
  const paint = (colour) => new THREE.MeshLambertMaterial({ color: colour });
  const glass = (colour, opacity) => new THREE.MeshLambertMaterial({
    color: colour, opacity, transparent: true, side: THREE.DoubleSide, depthWrite: false });
  const stroke = (colour, opacity = 1) => new THREE.LineBasicMaterial({
    color: colour, opacity, transparent: opacity < 1 });
  const force_paint = new THREE.MeshLambertMaterial({
    color: COLOUR.force, emissive: COLOUR.force, emissiveIntensity: 0.45 });
  const normal_paint = paint(COLOUR.normal);
  const contact_paint = paint(COLOUR.contact);
  const cone_glass = glass(COLOUR.cone, 0.2);
  const cone_stroke = stroke(COLOUR.cone, 0.55);

  const groups = {};
  for (const name of ["object", "normals", "cones", "forces", "always"]) {
    groups[name] = new THREE.Group();
  }
  const labels = [];
  const counts = { contacts: 0, normals: 0, cones: 0, forces: 0, object: 0 };

  if (grasp.hull) {
    const surface = glass(COLOUR.object, 0.22);
    const edge = stroke(COLOUR.edge);
    groups.object.add(grasp.hull.points
      ? hull(grasp.hull.points.map(placed), surface, edge)
      : ball(placed(grasp.hull.centre), grasp.hull.radius / size, surface, edge));
    counts.object = 1;
  }

  const { newton: scale, largest } = newton(grasp.contacts, points);
  grasp.contacts.forEach((contact, i) => {
    const at = points[i];
    const normal = new THREE.Vector3(...contact.normal).normalize();
    const dot = new THREE.Mesh(new THREE.SphereBufferGeometry(0.028, 24, 16), contact_paint);
    dot.position.copy(at);
    const pad = new THREE.Mesh(new THREE.CylinderBufferGeometry(0.06, 0.06, 0.008, 32), contact_paint);
    pad.position.copy(at);
    pad.quaternion.setFromUnitVectors(UP, normal);
    groups.always.add(dot, pad);
    ++counts.contacts;
    labels.push({ text: contact.label, kind: "contact", group: "always",
      place: at.clone().addScaledVector(normal, -0.2) });

    // It begins outside, since a force along it hides the rest.
    groups.normals.add(arrow(at.clone().addScaledVector(normal, -0.12), normal, 0.42, 0.007, normal_paint));
    ++counts.normals;
    if (contact.friction > 0) {
      groups.cones.add(open_cone(at, normal, Math.atan(contact.friction), CONE_SLANT, cone_glass, cone_stroke));
      ++counts.cones;
    }
    const force = contact.force && new THREE.Vector3(...contact.force.world);
    const length = force ? force.length() * scale : 0;
    if (length < 1e-3) return;
    const direction = force.clone().normalize();
    groups.forces.add(arrow(at, direction, length, 0.016, force_paint));
    ++counts.forces;
    labels.push({ text: force_text(force.length()), kind: "force", group: "forces",
      place: at.clone().addScaledVector(direction, length) });
  });

  if (has_centre) {
    const at = placed(grasp.centre);
    groups.always.add(cross(at, 0.07, stroke(COLOUR.contact)));
    labels.push({ text: "centre", kind: "centre", group: "always", place: at });
  }

  const unit = round_length(size * 0.5);
  const corner = box.min.clone().sub(middle).divideScalar(size).addScalar(-0.12);
  const axis_paint = paint(COLOUR.axis);
  [[1, 0, 0], [0, 1, 0], [0, 0, 1]].forEach((axis, i) => {
    const direction = new THREE.Vector3(...axis);
    groups.always.add(arrow(corner, direction, unit / size, 0.006, axis_paint));
    labels.push({ text: "xyz"[i], kind: "axis", group: "always",
      place: corner.clone().addScaledVector(direction, unit / size + 0.06) });
  });
  labels.push({ text: length_text(unit), kind: "axis", group: "always",
    place: corner.clone().addScalar(-0.05) });

  let words = `The axes x, y and z are ${length_text(unit)} long.`;
  if (counts.forces) words += ` The longest arrow is ${force_text(largest)}.`;
  if (counts.cones) words += " The cones open by the angle of friction, atan \u00b5, to each side of the normal.";
  if (!has_centre) words += " The centre is too far away to be shown.";
  return { groups, labels, counts, words };
}
