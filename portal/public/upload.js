// Files of a document's form: they can be dropped, are checked before they are sent, and sending shows its progress.
// Without this script the form works as a plain one.
'use strict';

function element(name, text, attributes = {}) {
  const made = document.createElement(name);
  made.textContent = text;
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  return made;
}

function enhance(form, kept = []) {
  const texts = JSON.parse(form.dataset.texts);
  const input = form.querySelector('input[type=file]');
  const drop = element('p', texts['upload-drop'], {class: 'drop'});
  const list = element('ul', '', {class: 'files'});
  const status = element('p', '', {class: 'problem', role: 'alert'});
  const bar = element('progress', '', {max: '1', value: '0', 'aria-label': texts['upload-progress']});
  bar.hidden = true;
  form.querySelector('#files-help').after(drop, list, bar, status);
  let files = [];

  function problem() {
    const tooLarge = files.find(file => file.size > Number(form.dataset.largest));
    if (tooLarge) return `${texts['upload-large']} ${tooLarge.name}`;
    if (files.length > Number(form.dataset.mostFiles)) return texts['upload-count'];
    const total = files.reduce((sum, file) => sum + file.size, 0);
    const most = Number(form.dataset.largestForm);
    return most > 0 && total > most ? texts['upload-total'] : '';
  }

  function choose(chosen) {
    files = chosen;
    const transfer = new DataTransfer();
    for (const file of files) transfer.items.add(file);
    input.files = transfer.files;
    list.replaceChildren(...files.map(file => {
      const item = element('li', `${file.name} `);
      const remove = element('button', texts['upload-remove'], {type: 'button'});
      remove.setAttribute('aria-label', `${texts['upload-remove']}: ${file.name}`);
      remove.addEventListener('click', () => { choose(files.filter(each => each !== file)); input.focus(); });
      item.append(remove);
      return item;
    }));
    status.textContent = problem();
  }

  function show(page) {
    // The form again, with what is wrong; the browser would lose the files.
    for (const script of page.querySelectorAll('script')) script.remove();  // they run already
    document.title = page.title;
    document.body.replaceChildren(...document.importNode(page.body, true).childNodes);
    const again = document.getElementById('document-form');
    if (again) enhance(again, files);
    window.scrollTo(0, 0);
    document.getElementById('content').focus();
  }

  function fail(reason) {
    bar.hidden = true;
    status.textContent = texts[reason];
    for (const button of form.querySelectorAll('button')) button.disabled = false;
  }

  function send() {
    const request = new XMLHttpRequest();
    request.open('POST', form.action);
    request.responseType = 'document';
    request.upload.addEventListener('progress', event => {
      if (event.lengthComputable) bar.value = event.loaded / event.total;
    });
    request.addEventListener('load', () => {
      const isStored = request.status === 200 && new URL(request.responseURL).pathname === '/document';
      if (isStored) location.assign(request.responseURL);
      else if (request.response?.getElementById('content')) show(request.response);
      else fail(request.status === 413 ? 'upload-total' : 'form-unknown');
    });
    let isSent = false;
    request.upload.addEventListener('load', () => { isSent = true; });
    const stop = () => fail(isSent ? 'form-unknown' : 'upload-failed');
    request.addEventListener('error', stop);
    request.addEventListener('abort', stop);
    const data = new FormData(form);
    for (const button of form.querySelectorAll('button')) button.disabled = true;
    bar.value = 0;
    bar.hidden = false;
    request.send(data);
  }

  input.addEventListener('change', () => choose([...input.files]));
  form.addEventListener('dragover', event => {
    event.preventDefault();
    drop.classList.add('over');
  });
  form.addEventListener('dragleave', () => drop.classList.remove('over'));
  form.addEventListener('drop', event => {
    event.preventDefault();
    drop.classList.remove('over');
    choose([...files, ...event.dataTransfer.files]);
  });
  form.addEventListener('submit', event => {
    if (files.length === 0) return;
    event.preventDefault();
    status.textContent = problem();
    if (status.textContent === '') send();
  });
  if (kept.length > 0) choose(kept);
  else if (input.files.length > 0) choose([...input.files]);
}

const documentForm = document.getElementById('document-form');
if (documentForm) enhance(documentForm);
