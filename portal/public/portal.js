// What scripts add to the pages: keys, the selection without a reload, and the preview beside the hit list. The pages work
// without them.
"use strict";

(() => {
  const form = document.getElementById("selection");
  const rows = form ? [...form.querySelectorAll("tbody tr:has(a.hit)")] : [];
  let current = null;  // the row that keys act on
  let preview = null;  // the element with the preview, null while it is closed
  let asked = null;  // cancels the preview that is being fetched

  document.documentElement.classList.add("script");

  // Selection

  let sent = Promise.resolve();

  /** Tells the server about one tick, after those before it. */
  function send(box) {
    const body = new URLSearchParams([["token", form.elements.token.value], ["was", box.value]]);
    if (box.checked) {
      body.append("hit", box.value);
    }
    sent = sent.then(async () => {
      const status = form.querySelector(".selected");
      try {
        const answer = await fetch(form.action, { method: "POST", body, headers: { Accept: "application/json" } });
        if (!answer.ok || !answer.headers.get("Content-Type").startsWith("application/json")) {
          throw new Error(answer.status);
        }
        status.textContent = (await answer.json()).text;
        markSaved(box);
        keepAddress();
      } catch {
        status.textContent = form.dataset.failed;
      }
    });
  }

  /** Records a saved tick in the form, so that sending the whole form can undo it. */
  function markSaved(box) {
    box.closest("td").querySelector("[name=was]")?.remove();
    const was = document.createElement("input");
    Object.assign(was, { type: "hidden", name: "was", value: box.value });
    box.closest("td").append(was);
  }

  /** Puts the name of the selection into the address, where reload, back and bookmarks find it. */
  function keepAddress() {
    history.replaceState({ ...history.state, row: current?.id }, "", form.dataset.here + location.hash);
  }

  form?.addEventListener("change", (event) => event.target.name === "hit" && send(event.target));

  // Rows

  function linkOf(row) {
    return row?.querySelector("a.hit");
  }

  function choose(row) {
    current?.classList.remove("current");
    current = row;
    current.classList.add("current");
    history.replaceState({ ...history.state, row: row.id }, "");
  }

  function step(by) {
    const at = current ? rows.indexOf(current) + by : by > 0 ? 0 : rows.length - 1;
    const row = rows[Math.max(0, Math.min(rows.length - 1, at))];
    if (!row || row === current) {
      return;
    }
    choose(row);
    linkOf(row).focus();
    if (preview) {
      show(row);
    }
  }

  form?.addEventListener("focusin", (event) => {
    const row = event.target.closest("tbody tr");
    if (row && row !== current) {
      choose(row);
    }
  });

  /** Back to where the user was: the row of this entry of the history, or the one that the address names. */
  function restore() {
    const row = document.getElementById(history.state?.row ?? location.hash.slice(1));
    if (rows.includes(row)) {
      choose(row);
      linkOf(row).focus({ preventScroll: history.state?.row !== undefined && isSeen(row) });
    }
  }

  function isSeen(row) {
    const place = row.getBoundingClientRect();
    return place.top >= 0 && place.bottom <= innerHeight;
  }

  // Preview and help: parts of pages of their own

  async function part(url, id, signal) {
    const answer = await fetch(url, { signal, headers: { Accept: "text/html" } });
    const page = new DOMParser().parseFromString(await answer.text(), "text/html");
    const found = document.importNode(page.getElementById(id) ?? page.querySelector("main"), true);
    for (const [from, to] of [["h2", "h3"], ["h1", "h2"]]) {
      for (const old of found.querySelectorAll(from)) {
        const heading = document.createElement(to);
        heading.id = old.id;
        heading.append(...old.childNodes);
        old.replaceWith(heading);
      }
    }
    return found;
  }

  function closeButton(close) {
    const button = document.createElement("button");
    button.type = "button";
    button.className = "close";
    button.textContent = document.querySelector("[data-close]")?.dataset.close ?? "\u00D7";
    button.addEventListener("click", close);
    return button;
  }

  async function show(row) {
    asked?.abort();
    asked = new AbortController();
    const { signal } = asked;
    const link = row.querySelector("a.look");
    if (!preview) {
      preview = document.createElement("aside");
      preview.className = "preview";
      preview.tabIndex = 0;  // it scrolls
      document.querySelector(".beside").append(preview);
      row.scrollIntoView({ block: "nearest" });  // the preview may be in front of it
    }
    preview.setAttribute("aria-label", link.getAttribute("aria-label"));
    preview.setAttribute("aria-busy", "true");
    preview.dataset.row = row.id;
    try {
      const found = await part(link.href, "preview", signal);
      found.setAttribute("aria-live", "polite");
      preview?.replaceChildren(closeButton(() => hide()), ...(found.id === "preview" ? [found] : found.childNodes));
      preview?.removeAttribute("aria-busy");
      preview?.scrollTo(0, 0);
    } catch (error) {
      if (error.name !== "AbortError") {
        location.assign(link.href);
      }
    }
  }

  function hide() {
    asked?.abort();
    const row = document.getElementById(preview?.dataset.row);
    preview?.remove();
    preview = null;
    linkOf(row)?.focus();
  }

  function look(row) {
    if (preview?.dataset.row === row.id) {
      hide();
    } else {
      show(row);
    }
  }

  form?.addEventListener("click", (event) => {
    const link = event.target.closest("a.look");
    if (link && !event.ctrlKey && !event.metaKey && !event.shiftKey && event.button === 0) {
      event.preventDefault();
      look(link.closest("tr"));
    }
  });

  async function help(link) {
    if (document.querySelector("dialog[open]")) {
      return;
    }
    const back = encodeURIComponent(location.pathname + location.search);
    let found;
    try {
      found = await part(`${link.href}?back=${back}`, "keys");
    } catch {
      location.assign(link.href);
      return;
    }
    const dialog = document.createElement("dialog");
    const before = document.activeElement;
    dialog.setAttribute("aria-labelledby", "keys-title");
    dialog.append(closeButton(() => dialog.close()), found);
    dialog.addEventListener("close", () => {
      dialog.remove();
      before?.focus();
    });
    document.body.append(dialog);
    dialog.showModal();
  }

  const helpLink = document.querySelector("a[data-key='?']");
  helpLink?.addEventListener("click", (event) => {
    if (location.pathname !== "/keys" && !event.ctrlKey && !event.metaKey && !event.shiftKey) {
      event.preventDefault();
      help(helpLink);
    }
  });

  // Keys

  function mark(by) {
    const marks = [...(preview ?? document.querySelector("main")).querySelectorAll("mark")]
      .filter((each) => each.getClientRects().length > 0);
    const at = marks.indexOf(document.activeElement.closest("mark"));
    const next = marks[at < 0 ? (by > 0 ? 0 : marks.length - 1) : (at + by + marks.length) % marks.length];
    next?.focus({ preventScroll: true });
    next?.scrollIntoView({ block: "center" });
  }

  function follow(selector) {
    document.querySelector(selector)?.click();
  }

  function query() {
    const field = document.querySelector("main input[type=search]");
    if (field) {
      field.focus();
      field.select();
    } else {
      location.assign("/");
    }
  }

  const KEYS = {
    "/": query,
    "?": () => helpLink && help(helpLink),
    n: () => mark(1),
    N: () => mark(-1),
    "[": () => follow("[data-key='['], a[rel=prev]"),
    "]": () => follow("[data-key=']'], a[rel=next]"),
  };
  const LIST_KEYS = {
    j: () => step(1),
    k: () => step(-1),
    ArrowDown: () => step(1),
    ArrowUp: () => step(-1),
    Enter: () => linkOf(current)?.click(),
    " ": () => current && look(current),
    x: () => current?.querySelector("[name=hit]")?.click(),
  };
  const TYPED = "input:not([type=checkbox], [type=radio], [type=submit]), textarea, select, [contenteditable]";

  function actionOf(event) {
    const on = event.target instanceof Element ? event.target : document.body;
    if (on.closest(TYPED) || document.querySelector("dialog[open]")) {
      return null;
    }
    if (rows.length === 0 || !LIST_KEYS[event.key]) {
      return KEYS[event.key] ?? null;
    }
    // Some elements use these keys themselves.
    const own = {
      Enter: "a, button, summary, input",
      " ": "a:not(.hit), button, summary, input, .preview",
      ArrowDown: "[type=radio], .preview",
      ArrowUp: "[type=radio], .preview",
    }[event.key];
    const needsRow = [" ", "Enter", "x"].includes(event.key);
    return (own && on.closest(own)) || (needsRow && !current) ? null : LIST_KEYS[event.key];
  }

  document.addEventListener("keydown", (event) => {
    if (event.key === "Escape" && preview && !document.querySelector("dialog[open]")) {
      hide();
      return;
    }
    if (!document.body.hasAttribute("data-keys") || event.ctrlKey || event.altKey || event.metaKey || event.isComposing) {
      return;
    }
    const action = actionOf(event);
    if (action) {
      event.preventDefault();
      action();
    }
  });

  restore();
  // The browser takes the focus away when it goes to the row that the address names.
  addEventListener("load", () => setTimeout(() => document.activeElement === document.body && restore()));
})();
