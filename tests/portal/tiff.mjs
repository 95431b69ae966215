// Writes plain TIFF files for the tests.

function tiff(width, height, bits, samples, photometric, rows, orientation = 1) {
  const data = rows.length % 2 ? Buffer.concat([rows, Buffer.alloc(1)]) : rows;
  const bitsAt = 8 + data.length;  // three values do not fit into the entry
  const entries = [[256, width], [257, height], [258, samples === 3 ? bitsAt : bits, samples], [259, 1], [262, photometric], [273, 8],
    [274, orientation], [277, samples], [278, height], [279, rows.length]];
  const head = Buffer.alloc(8);
  head.write('II*\0', 'latin1');
  head.writeUInt32LE(bitsAt + 6, 4);
  const directory = Buffer.alloc(6 + 2 + entries.length * 12 + 4);
  for (let sample = 0; sample < 3; ++sample) directory.writeUInt16LE(bits, 2 * sample);
  directory.writeUInt16LE(entries.length, 6);
  entries.forEach(([tag, value, count = 1], number) => {
    const at = 8 + number * 12;
    directory.writeUInt16LE(tag, at);
    directory.writeUInt16LE(tag === 258 ? 3 : 4, at + 2);
    directory.writeUInt32LE(count, at + 4);
    directory.writeUInt32LE(value, at + 8);
  });
  return Buffer.concat([head, data, directory]);
}

/** Black on the left, white on the right. The directory may state another size. */
export function bilevel(width, height, { width: said = width, height: saidHeight = height } = {}) {
  const row = Buffer.alloc(width / 8);
  row.fill(0xFF, 0, row.length / 2);
  return tiff(said, saidHeight, 1, 1, 0, Buffer.concat(Array(height).fill(row)));
}

/** One colour all over: three bytes, or one of grey. */
export function colour(width, height, bytes, orientation = 1) {
  return tiff(width, height, 8, bytes.length, bytes.length === 3 ? 2 : 1, Buffer.alloc(width * height * bytes.length, Buffer.from(bytes)), orientation);
}
