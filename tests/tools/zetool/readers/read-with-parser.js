// Prints what vcd-parser reads in a waveform: path, time and value of each change.
'use strict';
const fs = require('fs');
const parser = require('vcd-parser');

parser.parse(fs.readFileSync(process.argv[2], 'latin1')).then(waveform => {
    for (const signal of waveform.signal)
        for (const [time, value] of signal.wave)
            console.log(signal.name.replace(/\[\d+:0\]$/, ''), time, value);
}).catch(error => {
    console.error(error);
    process.exit(1);
});
