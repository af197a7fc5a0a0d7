// What each page of the reference does when it is loaded.

DoxygenAwesomeDarkModeToggle.init();

// The tree opens its first level on the front, as it does on every other page.
addEventListener('load', () => {
  const arrow = document.querySelector('#nav-tree-contents .arrow');
  if (arrow?.textContent === '\u25ba') arrow.parentElement.click();
});
