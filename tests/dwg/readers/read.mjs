// Reads DWG files by LibreDWG and says in DXF what it found: node read.mjs IN.dwg OUT.dxf [IN OUT ...]
// OUT.dxf.more.json says which objects it saw, by handle, and, as group codes with values, what its DXF leaves out of some.
// One line for each file: "ok", or "failed REASON". Exit code 77 when the reader is not installed.
import fs from 'node:fs';

let LibreDwg, Dwg_File_Type, Dwg_Object_Type;
try {
  ({ LibreDwg, Dwg_File_Type, Dwg_Object_Type } = await import('@mlightcad/libredwg-web'));
} catch (error) {
  console.error(`no reader: ${error.message.split('\n')[0]}`);
  process.exit(77);
}
const report = console.log;
console.log = console.warn = () => {};  // the library's own notes
const library = await LibreDwg.create();
const field = (entity, name) => library.dwg_dynapi_entity_data(entity, name);

function polyline(entity) {
  const reals = (name, count, each) =>
      count > 0 ? Array.from(library.dwg_ptr_to_double_array(field(entity, name), count * each)) : [];
  const widths = reals('widths', field(entity, 'num_widths') ?? 0, 2);
  return {
    40: widths.filter((_, i) => i % 2 === 0),
    41: widths.filter((_, i) => i % 2 === 1),
    42: reals('bulges', field(entity, 'num_bulges') ?? 0, 1),
  };
}

const missing = [
  [Dwg_Object_Type.DWG_TYPE_LWPOLYLINE, polyline],
  [Dwg_Object_Type.DWG_TYPE_VERTEX_2D, (entity) => ({
    40: [field(entity, 'start_width')], 41: [field(entity, 'end_width')], 42: [field(entity, 'bulge')],
    70: [field(entity, 'flag')],
  })],
  [Dwg_Object_Type.DWG_TYPE_ATTDEF, (entity) => ({ 70: [field(entity, 'flags')] })],
];

function more(file) {
  const data = library.dwg_read_data(file, Dwg_File_Type.DWG);
  const all = { seen: {}, groups: {} };
  const wasm = library.wasmInstance;
  for (let i = 0; i < wasm.dwg_get_num_objects(data); ++i) {
    const object = wasm.dwg_get_object(data, i);
    const type = wasm.dwg_object_get_fixedtype(object);
    const handle = Number(library.dwg_object_get_handle_object(object).value);
    all.seen[handle] = type === Dwg_Object_Type.DWG_TYPE_PROXY_ENTITY || type === Dwg_Object_Type.DWG_TYPE_PROXY_OBJECT
        ? 'proxy' : 'itself';
    const take = missing.find(([known]) => known === type);
    if (take === undefined) continue;
    const entity = library.dwg_object_to_entity_tio(object);
    if (entity) all.groups[handle] = take[1](entity);
  }
  library.dwg_free(data);
  return all;
}

for (let i = 2; i + 1 < process.argv.length; i += 2) {
  try {
    const file = fs.readFileSync(process.argv[i]);
    const text = library.dwg_write_dxf(file);
    if (text === null) throw new Error('the reader gives up');
    fs.writeFileSync(process.argv[i + 1], text);
    fs.writeFileSync(`${process.argv[i + 1]}.more.json`, JSON.stringify(more(file)));
    report('ok');
  } catch (error) {
    report(`failed ${String(error.message ?? error).split('\n')[0]}`);
  }
}
