// Makes tests/data/mavlink_frames.json: MAVLink frames of the npm package node-mavlink, each with what it means.
// The tests need neither node nor this script. In a folder outside of the tree:
//   npm install node-mavlink@2.3.0
//   node <tree>/tools/make_mavlink_frames.mjs <tree>/companion/AxTelemetry/mavlink/messages.json > mavlink_frames.json
import fs from 'fs';
import path from 'path';
import { createRequire } from 'module';

const require = createRequire(path.join(process.cwd(), 'package.json'));
const { minimal, common, standard, ardupilotmega, MavLinkProtocolV1, MavLinkProtocolV2 } = require('node-mavlink');
const classes = { ...minimal.REGISTRY, ...standard.REGISTRY, ...common.REGISTRY, ...ardupilotmega.REGISTRY };
const table = JSON.parse(fs.readFileSync(process.argv[2]));

const systemId = 7;
const componentId = 191;
const key = Buffer.from(Array.from({ length: 32 }, (_, i) => 5 * i + 3));
const signStart = Date.UTC(2015, 0, 1); // of the times in signatures

// Values that tell fields apart: the n-th one has n in its lowest byte, and no byte of it is zero.
let n = 0;
const next = () => (n = (n % 120) + 1);
const makers = {
  uint8_t: () => 0x80 + next(),
  int8_t: () => -next(),
  uint16_t: () => 0x8100 + next(),
  int16_t: () => -0x2100 - next(),
  uint32_t: () => 0x84838200 + next(),
  int32_t: () => -0x24232200 - next(),
  uint64_t: () => 0x8887868584838200n + BigInt(next()),
  int64_t: () => -0x2827262524232200n - BigInt(next()),
  float: () => Math.fround(-1000.1 - next()),
  double: () => -1000.1 - next(),
  char: () => 'x',
};
const zeros = { uint64_t: 0n, int64_t: 0n };

function valueOf(field) {
  const type = field.type.replace('[]', '').replace('_mavlink_version', '');
  if (type === 'char')
    return `${field.source} ${next()} `.repeat(field.length).slice(0, field.length);
  return field.type.endsWith('[]') ? Array.from({ length: field.length }, makers[type]) : makers[type]();
}

function zeroOf(field) {
  const type = field.type.replace('[]', '');
  const zero = zeros[type] ?? 0;
  return type === 'char' ? '' : field.type.endsWith('[]') ? Array(field.length).fill(zero) : zero;
}

// 64-bit numbers do not survive JSON as numbers.
const plain = value => Array.isArray(value) ? value.map(plain) : typeof value === 'bigint' ? String(value) : value;

const frames = [];
function add(row, { version = 2, fieldsSet = Infinity, signTime = 0 } = {}) {
  const type = classes[row.id];
  const message = new type();
  const fields = {};
  type.FIELDS.forEach((field, i) => {
    message[field.name] = i < fieldsSet ? valueOf(field) : zeroOf(field);
    fields[field.source] = plain(message[field.name]);
  });
  const sequence = frames.length % 256;
  const isSigned = signTime > 0;
  const protocol = version === 1 ? new MavLinkProtocolV1(systemId, componentId)
    : new MavLinkProtocolV2(systemId, componentId, isSigned ? MavLinkProtocolV2.IFLAG_SIGNED : 0, 0);
  let bytes = protocol.serialize(message, sequence);
  if (isSigned)
    bytes = protocol.sign(bytes, 9, key, signStart + signTime / 100);
  frames.push({ message: row.name, id: row.id, version, sequence, ...(isSigned && { linkId: 9, signTime }),
    fields, hex: bytes.toString('hex') });
}

for (const row of table)
  add(row);
// Trailing zeros are cut off in version 2: all but the first field of the payload.
for (const row of table.filter((_, i) => i % 4 === 0))
  add(row, { fieldsSet: 1 });
// Version 1 knows no extension fields. node-mavlink sends them all the same: two such frames are for reading only.
const first = table.filter(row => row.id < 256);
const isExtended = row => row.fields.some(field => field.extension);
for (const row of [...first.filter(row => !isExtended(row)), ...first.filter(isExtended).slice(0, 2)])
  add(row, { version: 1 });
table.slice(0, 4).forEach((row, i) => add(row, { signTime: 36000000000000 + 100 * i }));

const lines = frames.map(frame => '    ' + JSON.stringify(frame));
console.log(`{\n  "madeBy": "node-mavlink 2.3.0",\n  "systemId": ${systemId},\n  "componentId": ${componentId},\n` +
  `  "key": "${key.toString('hex')}",\n  "frames": [\n${lines.join(',\n')}\n  ]\n}`);
