// What each page of the reference does when it is loaded.

DoxygenAwesomeDarkModeToggle.init();

// The tree opens its first level on the front, as it does on every other page.
addEventListener('load', () => {
  const arrow = document.querySelector('#nav-tree-contents .arrow');
  if (arrow?.textContent === '\u25ba') arrow.parentElement.click();
});

// The search box finds functions, sections and guides by any parts of words. Doxygen's own search knows only how a
// name begins, and nearly every name of the library begins with the same letters. Doxygen makes the box anew when the
// width of the window changes, so the document listens to its events.
{
  const MOST = 40;
  const list = document.createElement('div');
  let chosen = -1;

  const field = () => document.getElementById('MSearchField');
  const element = (name, properties, ...children) => {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
  };

  // The words of a name or a text, each after a blank: "nuv gry img sobel 90 just".
  const words = (text) => ` ${text.replace(/[A-Z]+(?=[a-z])|[0-9]+/g, ' $&')} `.toLowerCase();
  const plain = (text) => text.toLowerCase();

  // The smaller, the better: the name counts more than the text, and the start of a word more than its inside.
  function rank({name, text, synonyms}, terms) {
    return terms.reduce((sum, term) => {
      if (plain(name).replace(/^nuv/, '').startsWith(term.replace(/^nuv(?=.)/, ''))) return sum;
      if (words(name).includes(` ${term}`)) return sum + 1;
      if (plain(name).includes(term)) return sum + 2;
      if (words(text).includes(` ${term}`)) return sum + 4;
      return sum + (plain(`${text} ${synonyms}`).includes(term) ? 8 : Infinity);
    }, 0);
  }

  function choose(index) {
    list.children[chosen]?.setAttribute('aria-selected', 'false');
    chosen = Math.max(-1, Math.min(index, list.children.length - 1));
    const link = list.children[chosen];
    field().setAttribute('aria-activedescendant', link?.id ?? '');
    link?.setAttribute('aria-selected', 'true');
    link?.scrollIntoView({block: 'nearest'});
  }

  function close() {
    list.hidden = true;
    field()?.setAttribute('aria-expanded', 'false');
  }

  function show() {
    const terms = field().value.toLowerCase().split(/\s+/).filter(Boolean);
    if (terms.length === 0 || !window.searchIndex) return close();
    const found = window.searchIndex.map((entry) => ({entry, value: rank(entry, terms)}))
      .filter(({value}) => value < Infinity)
      .sort((a, b) => a.value - b.value || a.entry.name.length - b.entry.name.length).slice(0, MOST);
    list.replaceChildren(...found.map(({entry: {name, link, text}}, i) => {
      const a = element('a', {href: link, id: `found${i}`, tabIndex: -1},
        element('b', {textContent: name}), element('small', {textContent: text}));
      a.setAttribute('role', 'option');
      return a;
    }));
    if (found.length === 0) list.textContent = 'Nothing found.';
    list.style.top = `${field().getBoundingClientRect().bottom + 8}px`;
    list.hidden = false;
    field().setAttribute('aria-expanded', 'true');
    choose(-1);
  }

  // Prepares the box, and loads the index when it is first needed.
  function begin() {
    searchBox.OnSearchFieldChange = () => {};
    const attributes = {role: 'combobox', autocomplete: 'off', 'aria-label': 'Search', 'aria-controls': 'found',
      'aria-expanded': 'false'};
    for (const [name, value] of Object.entries(attributes)) field().setAttribute(name, value);
    if (list.isConnected) return;
    list.id = 'found';
    list.setAttribute('role', 'listbox');
    list.setAttribute('aria-label', 'Found');
    list.hidden = true;
    list.addEventListener('click', close);
    document.body.append(list);
    document.head.append(element('script', {src: 'search_index.js', onload: show}));
  }

  const onField = (action) => (event) => event.target === field() && action(event);
  document.addEventListener('focusin', onField(begin));
  document.addEventListener('input', onField(show));
  document.addEventListener('keydown', onField((event) => {
    if (event.key === 'ArrowDown') choose(chosen + 1);
    else if (event.key === 'ArrowUp') choose(chosen - 1);
    else if (event.key === 'Enter') list.children[Math.max(chosen, 0)]?.click();
    else if (event.key === 'Escape') close();
    else return;
    event.preventDefault();
  }));
  document.addEventListener('click', ({target}) => target !== field() && !list.contains(target) && close());
}
