// The shapes that a grasp is drawn with, in a scene whose size is about 1.
const UP = new THREE.Vector3(0, 1, 0);

/// An arrow along a unit direction; a short one gets a short head.
function arrow(from, direction, length, thickness, material) {
  const head = Math.min(6 * thickness, 0.6 * length);
  const shaft = new THREE.Mesh(
    new THREE.CylinderBufferGeometry(thickness, thickness, length - head, 16), material);
  const tip = new THREE.Mesh(new THREE.ConeBufferGeometry(head * 0.42, head, 24), material);
  shaft.position.y = (length - head) / 2;
  tip.position.y = length - head / 2;
  const group = new THREE.Group();
  group.add(shaft, tip);
  group.position.copy(from);
  group.quaternion.setFromUnitVectors(UP, direction);
  return group;
}

function line(points, material) {
  return new THREE.Line(new THREE.BufferGeometry().setFromPoints(points), material);
}

/// A cone with its apex at a point, open along a unit direction. All cones have the same
/// slant, so that one of any coefficient of friction has a size.
function open_cone(apex, direction, half_angle, slant, surface, edge) {
  const height = slant * Math.cos(half_angle);
  const radius = slant * Math.sin(half_angle);
  const group = new THREE.Group();
  const mantle = new THREE.Mesh(new THREE.ConeBufferGeometry(radius, height, 64, 1, true), surface);
  mantle.rotation.x = Math.PI;
  mantle.position.y = height / 2;
  group.add(mantle);
  const rim = [];
  for (let i = 0; i <= 64; ++i) {
    const angle = (i / 32) * Math.PI;
    rim.push(new THREE.Vector3(radius * Math.cos(angle), height, radius * Math.sin(angle)));
  }
  group.add(line(rim, edge));
  for (let i = 0; i < 64; i += 8) group.add(line([new THREE.Vector3(), rim[i]], edge));
  group.position.copy(apex);
  group.quaternion.setFromUnitVectors(UP, direction);
  return group;
}

function cross(at, size, material) {
  const group = new THREE.Group();
  for (const axis of [[1, 0, 0], [0, 1, 0], [0, 0, 1]]) {
    const half = new THREE.Vector3(...axis).multiplyScalar(size);
    group.add(line([at.clone().sub(half), at.clone().add(half)], material));
  }
  return group;
}

/// A ball, with the three circles that make it look round.
function ball(centre, radius, surface, edge) {
  const group = new THREE.Group();
  group.add(new THREE.Mesh(new THREE.SphereBufferGeometry(radius, 64, 32), surface));
  for (const turn of [[0, 0, 0], [Math.PI / 2, 0, 0], [0, Math.PI / 2, 0]]) {
    const circle = [];
    for (let i = 0; i <= 96; ++i) {
      const angle = (i / 48) * Math.PI;
      circle.push(new THREE.Vector3(radius * Math.cos(angle), radius * Math.sin(angle), 0));
    }
    const ring = line(circle, edge);
    ring.rotation.set(...turn);
    group.add(ring);
  }
  group.position.copy(centre);
  return group;
}

/// Up to three directions, orthonormal, in which points extend, the longest first. What is
/// thinner than the millionth part of the longest extent is flat.
function extents(points) {
  const directions = [];
  const rest = points.map((point) => point.clone().sub(points[0]));
  let longest = 0;
  while (directions.length < 3) {
    let farthest = rest[0];
    for (const point of rest) if (point.lengthSq() > farthest.lengthSq()) farthest = point;
    const length = farthest.length();
    longest = Math.max(longest, length);
    if (length <= 1e-6 * longest) break;
    const direction = farthest.clone().normalize();
    directions.push(direction);
    for (const point of rest) point.addScaledVector(direction, -point.dot(direction));
  }
  return directions;
}

/// The corners of the convex hull of points in the plane of two directions, in turn.
function outline(points, [first, second]) {
  const flat = points.map((point) => ({ point, x: point.dot(first), y: point.dot(second) }));
  flat.sort((a, b) => a.x - b.x || a.y - b.y);
  const turns_left = (a, b, c) => (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 1e-12;
  const chain = (sequence) => {
    const corners = [];
    for (const next of sequence) {
      while (corners.length > 1 && !turns_left(corners.at(-2), corners.at(-1), next)) corners.pop();
      corners.push(next);
    }
    return corners.slice(0, -1);
  };
  return [...chain(flat), ...chain(flat.slice().reverse())].map((corner) => corner.point);
}

/// The convex hull of any points: a body, or what is left of it where the points lie in a
/// plane, on a line or at one place.
function hull(points, surface, edge) {
  const group = new THREE.Group();
  const directions = extents(points);
  if (directions.length === 3) {
    const positions = [];
    for (const face of new THREE.ConvexHull().setFromPoints(points).faces) {
      let side = face.edge;
      do {
        positions.push(...side.head().point.toArray());
        side = side.next;
      } while (side !== face.edge);
    }
    const body = new THREE.BufferGeometry();
    body.setAttribute("position", new THREE.Float32BufferAttribute(positions, 3));
    body.computeVertexNormals();
    group.add(new THREE.Mesh(body, surface));
    group.add(new THREE.LineSegments(new THREE.EdgesGeometry(body, 2), edge));
  } else if (directions.length === 2) {
    const corners = outline(points, directions);
    const positions = [];
    for (let i = 2; i < corners.length; ++i) {
      for (const corner of [corners[0], corners[i - 1], corners[i]]) positions.push(...corner.toArray());
    }
    const sheet = new THREE.BufferGeometry();
    sheet.setAttribute("position", new THREE.Float32BufferAttribute(positions, 3));
    sheet.computeVertexNormals();
    group.add(new THREE.Mesh(sheet, surface));
    group.add(line([...corners, corners[0]], edge));
  } else if (directions.length === 1) {
    const along = points.slice().sort((a, b) => a.dot(directions[0]) - b.dot(directions[0]));
    group.add(line([along[0], along[along.length - 1]], edge));
  }
  return group;
}
