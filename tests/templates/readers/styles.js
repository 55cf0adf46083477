// Compiles a page of styles that uses the sheet in the folder FOLDER: node styles.js sass|less FOLDER; standard input
// is a list of sprites' names. Prints the CSS without empty lines.
const [, , language, folder] = process.argv;
const names = JSON.parse(require('fs').readFileSync(0, 'utf8'));
// What anybody writes for a name between quotes.
const quote = (name) => '"' + name.replace(/["\\]/g, '\\$&').replace(/[\0-\x1f]/g, (c) => '\\' + c.charCodeAt().toString(16) + ' ')
    .replace(/#\{/g, '\\23 {').replace(/@\{/g, '\\40 {') + '"';
const page = (head, rule) => head + names.map((name, i) => `.s${i} { ${rule}(${quote(name)}); }\n`).join('');
const print = ({ css }) => console.log(css.trim().replace(/\n\n/g, '\n'));
if (language === 'sass')
    print(require('sass').compileString(page('@use "sheet";\n', '@include sheet.sprite'), { loadPaths: [folder] }));
else
    require('less').render(page('#sheet { @import (reference) "sheet"; }\n', '#sheet.sprite'), { paths: [folder] })
        .then(print, (error) => { console.error(error.message); process.exit(1); });
