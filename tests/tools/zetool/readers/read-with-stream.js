// Prints what vcd-stream reads in a waveform: identifier, time and value of each change.
'use strict';
const fs = require('fs');
const vcd = require('vcd-stream');

// Its numbers of the commands that begin a value.
const scalars = new Map([[14, '0'], [15, '1']]);

// Bits, highest first; of an unknown bit the mask is 1.
function bits(value, mask) {
    let text = '';
    for (; value > 0n || mask > 0n; value >>= 1n, mask >>= 1n)
        text = (mask & 1n ? 'x' : value & 1n ? '1' : '0') + text;
    return text || '0';
}

(async () => {
    const reader = await vcd.parser();
    reader.change.any((identifier, time, command, value, mask) => {
        console.log(identifier, String(time), scalars.get(command) || bits(BigInt(value), BigInt(mask)));
    });
    reader.on('error', error => {
        console.error(error);
        process.exit(1);
    });
    fs.createReadStream(process.argv[2]).pipe(reader);
})();
