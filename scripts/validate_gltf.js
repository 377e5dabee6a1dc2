// Runs the Khronos glTF validator on one .gltf or .glb file and prints its counts:
//   node scripts/validate_gltf.js FILE
//   FILE: 0 errors, 2 warnings, 1 infos, 0 hints
// followed by one line a reported issue. Exit 0 when there is no error, 1 when there is,
// 2 when the file cannot be read or the validator is not installed. The validator is looked
// for in build-tools/node_modules (where scripts/setup.sh installs it), then on Node's own path.
'use strict';
const fs = require('fs');
const path = require('path');

function loadValidator() {
  const local = path.join(__dirname, '..', 'build-tools', 'node_modules', 'gltf-validator');
  for (const where of [local, 'gltf-validator']) {
    try {
      return require(where);
    } catch (e) {
      // try the next place
    }
  }
  return null;
}

function main() {
  const file = process.argv[2];
  if (!file) {
    console.error('usage: node validate_gltf.js FILE');
    return Promise.resolve(2);
  }
  const validator = loadValidator();
  if (!validator) {
    console.error('validate_gltf: the gltf-validator package is not installed (run scripts/setup.sh)');
    return Promise.resolve(2);
  }
  let bytes;
  try {
    bytes = fs.readFileSync(file);
  } catch (e) {
    console.error(`validate_gltf: ${file}: ${e.message}`);
    return Promise.resolve(2);
  }
  // A missing external file is reported as an issue instead of ending the run.
  const options = {
    uri: path.basename(file),
    maxIssues: 0,
    externalResourceFunction: (uri) => new Promise((resolve, reject) => {
      fs.readFile(path.resolve(path.dirname(file), decodeURIComponent(uri)), (err, data) => {
        if (err) reject(err.toString()); else resolve(data);
      });
    }),
  };
  return validator.validateBytes(new Uint8Array(bytes), options).then((report) => {
    const issues = report.issues;
    console.log(`${file}: ${issues.numErrors} errors, ${issues.numWarnings} warnings, ` +
                `${issues.numInfos} infos, ${issues.numHints} hints`);
    const severities = ['error', 'warning', 'info', 'hint'];
    for (const message of issues.messages) {
      console.log(`${severities[message.severity] || message.severity} ${message.code} ${message.pointer || ''}: ${message.message}`);
    }
    return issues.numErrors === 0 ? 0 : 1;
  }, (error) => {
    console.error(`validate_gltf: ${file}: ${error}`);
    return 1;
  });
}

main().then((code) => { process.exitCode = code; });
