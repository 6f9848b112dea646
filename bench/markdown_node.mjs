// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// marked and markdown-it, one call per reply: node markdown_node.mjs FILE ROUNDS
// Prints a line a case: its name, a tab, the rate in bytes per second in the quickest round, as other work
// of the machine counts against it.
import MarkdownIt from 'markdown-it';
import * as marked from 'marked';
import {readFileSync} from 'node:fs';

const [file, rounds] = process.argv.slice(2);
const bytes = readFileSync(file);
const replies = bytes.toString().split('\0').slice(0, -1);
const markdownIt = new MarkdownIt();

function blocksOfMarkdownIt(text) {
  const state = new markdownIt.core.State(text, markdownIt, {});
  for (const rule of markdownIt.core.ruler.getRules('')) {
    if (rule.name === 'inline') break;
    rule(state);
  }
  return state.tokens;
}

const cases = {
  'marked, blocks': (text) => new marked.Lexer().blockTokens(text, []),
  'marked': (text) => marked.lexer(text),
  'markdown-it, blocks': blocksOfMarkdownIt,
  'markdown-it': (text) => markdownIt.parse(text, {}),
};

const times = {};
// The first round warms up.
for (let round = 0; round <= Number(rounds); ++round) {
  for (const [name, parse] of Object.entries(cases)) {
    const begin = performance.now();
    for (const reply of replies) parse(reply);
    const time = performance.now() - begin;
    if (round > 0) (times[name] ??= []).push(time);
  }
}
for (const [name, each] of Object.entries(times)) {
  each.sort((a, b) => a - b);
  console.log(`${name}\t${(bytes.length * 1000) / each[0]}`);
}
