// node embed-page.mjs PAGE RESULT.cpp: the page, compressed, as the array of src/view/ViewerPage.h; PAGE "": no page.
// A result that says the same already stays as it is, so that nothing is compiled again.
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';

const [page, result] = process.argv.slice(2);
const bytes = page === '' ? Buffer.alloc(0) : gzipSync(readFileSync(page), { level: 9 });
const lines = [];
for (let i = 0; i < bytes.length; i += 32) {
  lines.push(`    ${[...bytes.subarray(i, i + 32)].join(',')},`);
}
const text = `#include "view/ViewerPage.h"

namespace {

constexpr unsigned char Page[] = {
${lines.join('\n')}
    0};

} // namespace

std::string_view tarnvexo::CompressedViewerPage()
{
    return {reinterpret_cast<const char*>(Page), sizeof Page - 1};
}
`;
if (!existsSync(result) || readFileSync(result, 'utf8') !== text) {
  writeFileSync(result, text);
}
