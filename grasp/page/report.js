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

/// What is no number, such as the distance to a bound that there is none of, has arrived as null.
function digits(value) {
  if (!Number.isFinite(value)) return "\u2013";
  return String(Number(value.toPrecision(5))).replace("-", "\u2212");
}

/// Numbers of one table with one count of decimals, so that their points stand below
/// each other: five digits for the largest, or fewer where that says it all.
function column_format(values) {
  const known = values.filter(Number.isFinite);
  const largest = known.reduce((most, value) => Math.max(most, Math.abs(value)), 0);
  const exponent = largest > 0 ? Math.floor(Math.log10(largest)) : 4;
  if (exponent > 6 || exponent < -5) return digits;
  let decimals = Math.max(0, 4 - exponent);
  while (decimals > 0 && known.every((value) => value.toFixed(decimals).endsWith("0"))) --decimals;
  return (value) => {
    if (!Number.isFinite(value)) return "\u2013";
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
  if (grasp.objective !== null) question += `: objective ${digits(grasp.objective)} N`;
  if (grasp.mean_epsilon !== null) question += `, mean margin ${digits(grasp.mean_epsilon)} N`;
  document.getElementById("question").textContent = question;
  for (const note of grasp.notes) {
    const item = document.createElement("li");
    item.textContent = note;
    document.getElementById("notes").append(item);
  }
}

/// Groups of columns, each with a heading above those of its columns: [heading, columns],
/// and a column is [heading, text of a contact's cell, class].
function column_groups() {
  const length = column_format(grasp.contacts.flatMap((contact) => contact.point));
  const groups = [
    ["", [["type", (contact) => contact.type, "word"],
      ["friction", ({ type, friction }) => (type === "friction" ? digits(friction) : "\u2013")]]],
  ];
  if (!forces) {
    groups.push(["point [m]", ["x", "y", "z"].map((axis, i) => [axis, (c) => length(c.point[i])])]);
    return groups;
  }
  const size = ({ world }) => Math.hypot(...world);
  const force = column_format(grasp.contacts.flatMap(
    ({ force: f }) => [size(f), ...f.local, ...f.world, f.cone_margin]));
  // A bound may be far away and would take the digits of the forces.
  const bound = column_format(grasp.contacts.map((contact) => contact.force.bound_margin));
  groups[0][1].push(["force [N]", ({ force: f }) => force(size(f))]);
  groups.push(["in the contact\u2019s frame [N]", ["tangential 1", "tangential 2", "normal"].map(
    (axis, i) => [axis, ({ type, force: f }) =>
      (type === "friction" || i === 2 ? force(f.local[i]) : "\u2013")])]);
  groups.push(["in the world [N]", ["x", "y", "z"].map(
    (axis, i) => [axis, ({ force: f }) => force(f.world[i])])]);
  const margins = [["cone", ({ force: f }) => force(f.cone_margin)],
    ["bound", ({ force: f }) => bound(f.bound_margin)]];
  if (grasp.contacts.some((contact) => contact.force.epsilon !== null)) {
    margins.push(["solver\u2019s", ({ force: f }) => digits(f.epsilon)]);
  }
  groups.push(["margins [N]", margins]);
  return groups;
}

function cell(kind, text, word) {
  const element = document.createElement(kind);
  element.textContent = text;
  if (word) element.className = word;
  return element;
}

function table() {
  const place = document.querySelector("#contacts table");
  place.caption.textContent = forces ? "Forces on the object, and how far inside its limits each is"
    : "The contacts. There are no forces to show.";
  const groups = column_groups();
  const [above, head] = [place.tHead.insertRow(), place.tHead.insertRow()];
  above.append(cell("td", ""));
  head.append(cell("th", "contact", "word"));
  for (const [heading_above, columns] of groups) {
    const over = cell(heading_above ? "th" : "td", heading_above);
    over.colSpan = columns.length;
    above.append(over);
    for (const [name, , word] of columns) head.append(cell("th", name, word));
  }
  for (const contact of grasp.contacts) {
    const row = place.tBodies[0].insertRow();
    const name = cell("th", "");
    name.scope = "row";
    name.append(cell("span", contact.label));
    row.append(name);
    for (const [, value, word] of groups.flatMap(([, columns]) => columns)) {
      row.append(cell("td", value(contact), word));
    }
  }
}

heading();
table();
