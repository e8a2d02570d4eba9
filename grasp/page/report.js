// The words of the page: heading and table. They need nothing but the document, and stand
// also where nothing can be drawn. Whatever users write goes in as text, never as markup.
const grasp = JSON.parse(document.getElementById("grasp").textContent);
const forces = grasp.contacts.some((contact) => contact.force);

const QUESTIONS = {
  exists: "Is there an internal force?",
  individual: "The largest mean force on",
  point: "The largest margin of",
  friction: "The largest margins of all contacts with friction",
  all: "The largest margins of all contacts",
};

const digits = (value) => String(Number(value.toPrecision(5))).replace("-", "\u2212");

/// Numbers of one table with one count of decimals, so that their points stand below
/// each other; the largest has five digits.
function column_format(values) {
  const largest = Math.max(...values.map(Math.abs));
  if (!(largest > 0)) return () => "0";
  const exponent = Math.floor(Math.log10(largest));
  if (exponent > 6 || exponent < -5) return digits;
  const decimals = Math.max(0, 4 - exponent);
  return (value) => {
    const text = value.toFixed(decimals);
    return Number(text) === 0 ? text.replace("-", "") : text.replace("-", "\u2212");
  };
}

function heading() {
  document.title = grasp.name || "Grasp";
  document.getElementById("name").textContent = grasp.name || "Grasp";
  const verdict = document.getElementById("verdict");
  verdict.dataset.verdict = grasp.verdict;
  verdict.querySelector("strong").textContent = grasp.verdict;
  verdict.querySelector("span").textContent = grasp.reason;
  let question = QUESTIONS[grasp.question] ?? grasp.question;
  if (grasp.about.length) question += " " + grasp.about.join(", ");
  if (grasp.objective !== null) question += `: objective ${digits(grasp.objective)}`;
  if (grasp.mean_epsilon !== null) question += `, mean margin ${digits(grasp.mean_epsilon)}`;
  document.getElementById("question").textContent = question;
  for (const note of grasp.notes) {
    const item = document.createElement("li");
    item.textContent = note;
    document.getElementById("notes").append(item);
  }
}

function columns() {
  const point = grasp.contacts.flatMap((contact) => contact.point);
  const length = column_format(point);
  const all = [
    ["type", (contact) => contact.type, "word"],
    ["friction", (contact) => (contact.type === "friction" ? digits(contact.friction) : "\u2013")],
  ];
  if (!forces) {
    "xyz".split("").forEach((axis, i) => all.push([`${axis} [m]`, (c) => length(c.point[i])]));
    return all;
  }
  const force = column_format(grasp.contacts.flatMap(
    ({ force: f }) => [Math.hypot(...f.world), ...f.local, ...f.world, f.cone_margin]));
  // A bound may be far away and would take the digits of the forces.
  const bound = column_format(grasp.contacts.map((contact) => contact.force.bound_margin));
  all.push(["size", ({ force: f }) => force(Math.hypot(...f.world))]);
  ["tangential 1", "tangential 2", "normal"].forEach((name, i) =>
    all.push([name, ({ type, force: f }) =>
      (type === "friction" || i === 2 ? force(f.local[i]) : "\u2013")]));
  "xyz".split("").forEach((axis, i) => all.push([axis, ({ force: f }) => force(f.world[i])]));
  all.push(["cone margin", ({ force: f }) => force(f.cone_margin)]);
  all.push(["bound margin", ({ force: f }) => bound(f.bound_margin)]);
  if (grasp.contacts.some((contact) => contact.force.epsilon !== null)) {
    all.push(["solver\u2019s margin", ({ force: f }) =>
      (f.epsilon === null ? "\u2013" : digits(f.epsilon))]);
  }
  return all;
}

function table() {
  const cell = (kind, text, word) => {
    const element = document.createElement(kind);
    element.textContent = text;
    if (word) element.className = "word";
    return element;
  };
  const place = document.querySelector("#contacts table");
  place.caption.textContent = forces
    ? "Forces on the object and margins, in newtons: in the contact\u2019s frame, and along x, y and z."
    : "The contacts. There are no forces to show.";
  const shown = columns();
  const head = place.tHead.insertRow();
  head.append(cell("th", "contact", true));
  for (const [name, , word] of shown) head.append(cell("th", name, word));
  for (const contact of grasp.contacts) {
    const row = place.tBodies[0].insertRow();
    const name = cell("th", contact.label);
    name.scope = "row";
    row.append(name);
    for (const [, value, word] of shown) row.append(cell("td", value(contact), word));
  }
}

heading();
table();
