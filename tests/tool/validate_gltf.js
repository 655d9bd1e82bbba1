// Validates a glTF 2.0 file (.glb or .gltf) with the Khronos validator.
// Usage: node validate_gltf.js FILE [NODE_MODULES_DIR]
// Prints the report's issues as JSON on stdout; exits 0 without errors, 1 with errors, 2 when
// the file or the validator cannot be loaded.
'use strict';
const fs = require('fs');
const path = require('path');

const file = process.argv[2];
const modules = process.argv[3];
let validator;
try {
  validator = modules ? require(path.join(modules, 'gltf-validator')) : require('gltf-validator');
} catch (e) {
  console.error('validate_gltf: cannot load gltf-validator (run scripts/bootstrap): ' + e.message);
  process.exit(2);
}
let bytes;
try {
  bytes = new Uint8Array(fs.readFileSync(file));
} catch (e) {
  console.error('validate_gltf: cannot read ' + file + ': ' + e.message);
  process.exit(2);
}
validator
  .validateBytes(bytes, {uri: path.basename(file), maxIssues: 100,
                         externalResourceFunction: () => Promise.reject(new Error('external'))})
  .then((report) => {
    console.log(JSON.stringify(report.issues, null, 2));
    process.exit(report.issues.numErrors > 0 ? 1 : 0);
  })
  .catch((e) => {
    console.error('validate_gltf: ' + file + ': ' + e.message);
    process.exit(2);
  });
