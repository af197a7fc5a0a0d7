// The dialog that shows the pipeline as a program.

import {code} from '../model/code.js';

async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {  // pages over http have no clipboard
    const area = document.createElement('textarea');
    area.value = text;
    (document.querySelector('dialog[open]') ?? document.body).append(area);
    area.select();
    document.execCommand('copy');
    area.remove();
  }
}

const SHOWN = 1500;  // milliseconds for which a button says that it has copied

// Copies a text, and says so on the button that was pressed and with a sentence for the live region.
export async function copyBy(button, text, say, sentence) {
  await copyText(text);
  say(sentence);
  button.dataset.label ??= button.textContent;
  button.textContent = 'Copied';
  setTimeout(() => (button.textContent = button.dataset.label), SHOWN);
}

export class CopyAs {
  // say is called with a sentence for the live region.
  constructor(dialog, functions, say) {
    this.dialog = dialog;
    this.functions = functions;
    this.text = dialog.querySelector('pre');
    for (const radio of dialog.querySelectorAll('[name=language]')) radio.addEventListener('change', () => this.show());
    const copy = dialog.querySelector('.copy');
    copy.addEventListener('click', () => copyBy(copy, this.text.textContent, say, 'The program is on the clipboard.'));
  }

  open(state, picture) {
    this.state = state;
    this.picture = picture;
    this.show();
    this.dialog.showModal();
  }

  show() {
    const language = this.dialog.querySelector('[name=language]:checked').value;
    try {
      this.text.textContent = code(this.state, this.functions, language, this.picture);
    } catch (error) {
      this.text.textContent = error.message;
    }
  }
}
