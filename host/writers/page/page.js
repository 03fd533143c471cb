// The filter and the switch of the page of cards. Without this script all stands on the page.
"use strict";
(() => {
  const tools = document.getElementById("tools");
  const filter = document.getElementById("filter");
  const count = document.getElementById("count");
  const details = document.getElementById("details");
  const items = document.querySelectorAll(".card, .entry");
  if (items.length < 2) return;
  tools.hidden = false;

  const fold = (text) => text.normalize("NFKD").replace(/\p{M}/gu, "").toLowerCase();
  let texts;

  function apply() {
    texts ??= Array.from(items, (item) => fold(item.textContent));
    const words = fold(filter.value).split(/\s+/).filter(Boolean);
    let shown = 0;
    items.forEach((item, i) => {
      const fits = words.every((word) => texts[i].includes(word));
      item.classList.toggle("out", !fits);
      shown += fits;
    });
    for (const group of document.querySelectorAll(".day, .calendar-days, .file")) {
      group.classList.toggle("out", words.length > 0 && !group.querySelector(".card:not(.out), .entry:not(.out)"));
    }
    count.textContent = words.length > 0 ? `${shown} / ${items.length}` : `${items.length}`;
  }

  count.textContent = `${items.length}`;
  let timer;
  filter.addEventListener("input", () => {
    clearTimeout(timer);
    timer = setTimeout(apply, 80);
  });
  details.addEventListener("change", () => {
    document.body.classList.toggle("brief", !details.checked);
  });
})();
