// Pictures of the visitor: a file that is chosen, dropped or pasted, and the camera.

import {decodePicture, pictureOf} from './picture.js';

// take is called with a picture and its name, complain with a sentence.
export function listenForPictures({fileButton, fileInput, cameraButton, cameraDialog, dropZone}, take, complain) {
  const open = async (file) => {
    try {
      take(await decodePicture(file), file.name || 'pasted picture');
    } catch (error) {
      complain(error.message);
    }
  };

  fileButton.addEventListener('click', () => fileInput.click());
  fileInput.addEventListener('change', () => {
    if (fileInput.files[0]) open(fileInput.files[0]);
    fileInput.value = '';  // so that the same file can be chosen again
  });

  let depth = 0;  // dragenter and dragleave come for each element within
  const hasFiles = (event) => event.dataTransfer?.types.includes('Files');
  const enter = (by) => (event) => {
    if (!hasFiles(event)) return;
    depth += by;
    dropZone.classList.toggle('dropping', depth > 0);
  };
  dropZone.addEventListener('dragenter', enter(1));
  dropZone.addEventListener('dragleave', enter(-1));
  dropZone.addEventListener('dragover', (event) => hasFiles(event) && event.preventDefault());
  dropZone.addEventListener('drop', (event) => {
    if (!hasFiles(event)) return;
    event.preventDefault();
    depth = 0;
    dropZone.classList.remove('dropping');
    open(event.dataTransfer.files[0]);
  });

  document.addEventListener('paste', (event) => {
    const file = [...event.clipboardData.files].find(({type}) => type.startsWith('image/'));
    if (!file) return;
    event.preventDefault();
    open(file);
  });

  listenForCamera(cameraButton, cameraDialog, take, complain);
}

function listenForCamera(button, dialog, take, complain) {
  const video = dialog.querySelector('video');
  let stream;
  button.addEventListener('click', async () => {
    if (!navigator.mediaDevices) {
      return complain('This browser gives the camera only to pages from a file, from this machine or over https.');
    }
    try {
      stream = await navigator.mediaDevices.getUserMedia({video: {facingMode: 'environment', width: {ideal: 1280}}});
    } catch {
      return complain('There is no camera, or the browser was not allowed to use it.');
    }
    video.srcObject = stream;
    dialog.showModal();
  });
  dialog.querySelector('.take').addEventListener('click', () => {
    if (!video.videoWidth) return;
    take(pictureOf(video, video.videoWidth, video.videoHeight), 'camera picture');
    dialog.close();
  });
  dialog.addEventListener('close', () => {
    for (const track of stream?.getTracks() ?? []) track.stop();
    video.srcObject = null;
  });
}
