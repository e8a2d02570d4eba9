// Labels over the scene: each follows its place and goes out of the way of the others.
//
// Positions are parts of the view's width and height: the view has another size on paper.
const MANY_LABELS = 120;

/// The places around its point that a label tries, in turn: steps of its own width and height.
const TRIED = [[0, 0]];
for (const ring of [1, 1.8, 2.6]) {
  for (const [x, y] of [[0, -1], [0, 1], [1, 0], [-1, 0], [1, -1], [-1, -1], [1, 1], [-1, 1]]) {
    TRIED.push([x * ring, y * ring]);
  }
}

class Labels {
  constructor(parent, labels) {
    this.parent = parent;
    this.labels = labels.map((label) => {
      const element = document.createElement("span");
      element.textContent = label.text;
      element.className = label.kind;
      parent.append(element);
      return { ...label, element, tried: label.kind === "force" || label.kind === "centre" ? 1 : 0 };
    });
    // Where it is crowded, the contacts choose first.
    const order = ["contact", "axis", "force", "centre"];
    this.labels.sort((a, b) => order.indexOf(a.kind) - order.indexOf(b.kind));
  }

  /// @param shown says of a label's group whether it is to be seen.
  place(camera, width, height, shown) {
    const taken = [];
    for (const label of this.labels) {
      const seen = label.place.clone().project(camera);
      const visible = shown(label.group) && Math.abs(seen.z) < 1;
      label.element.hidden = !visible;
      if (!visible) continue;
      label.width ??= label.element.offsetWidth;
      label.height ??= label.element.offsetHeight;
      const x = ((seen.x + 1) / 2) * width;
      const y = ((1 - seen.y) / 2) * height;
      const box = this.free_box(label, x, y, width, height, taken);
      taken.push(box);
      label.element.style.left = `${(box.x / width) * 100}%`;
      label.element.style.top = `${(box.y / height) * 100}%`;
    }
  }

  /// What a label took last time it takes again if it can, so that labels do not jump.
  free_box(label, x, y, width, height, taken) {
    const box = (tried) => ({
      x: x + TRIED[tried][0] * (label.width / 2 + 10),
      y: y + TRIED[tried][1] * (label.height / 2 + 6),
      half_width: label.width / 2,
      half_height: label.height / 2,
    });
    const is_free = (one) =>
      one.x >= one.half_width && one.x <= width - one.half_width &&
      one.y >= one.half_height && one.y <= height - one.half_height &&
      !taken.some((other) => Math.abs(one.x - other.x) < one.half_width + other.half_width &&
        Math.abs(one.y - other.y) < one.half_height + other.half_height);
    if (this.labels.length > MANY_LABELS) return box(0);
    for (const tried of [label.tried, ...TRIED.keys()]) {
      if (!is_free(box(tried))) continue;
      label.tried = tried;
      return box(tried);
    }
    return box(label.tried);
  }
}
