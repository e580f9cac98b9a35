#pragma once

/** How the report's page looks: on a screen, light or dark, on a phone and on paper. */
namespace Vrnt {

inline constexpr char g_szReportStyle[] = R"css(
:root {
  --page: #f6f7f8; --sheet: #ffffff; --text: #1c2730; --soft: #5b6873; --line: #dde2e6; --band: #eef1f4;
  --link: #1f5d91; --allowed: #0b5f8a; --allowed-band: #e3f0f7; --partial: #7d5200; --partial-band: #fdf1d7;
  --denied: #a1244a; --denied-band: #fbe6ec;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #14191d; --sheet: #1b2227; --text: #dde4e9; --soft: #97a4ae; --line: #323c44; --band: #242d34;
    --link: #86bdea; --allowed: #8cc8ea; --allowed-band: #17364a; --partial: #ecc26b; --partial-band: #403213;
    --denied: #f39ab3; --denied-band: #4a1d2c;
  }
}
* { box-sizing: border-box; }
html { scroll-padding-top: 1rem; -webkit-text-size-adjust: 100%; }
body {
  margin: 0 auto; padding: 2.2rem 1.5rem 4rem; max-width: 86rem; background: var(--page); color: var(--text);
  font: 15px/1.5 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif;
}
a { color: var(--link); text-underline-offset: .15em; }
h1 { margin: 0; font-size: 1.7rem; font-weight: 650; line-height: 1.2; letter-spacing: -.01em; }
h2 { margin: 0 0 .8rem; font-size: 1.2rem; font-weight: 650; }
h3 { margin: 0 0 .4rem; font-size: 1rem; }
small { font-size: .86em; color: var(--soft); }
header p { margin: .3rem 0 0; color: var(--soft); }
.note { margin: 0 0 1rem; max-width: 46rem; color: var(--soft); overflow-wrap: anywhere; }
.off { color: var(--soft); }

.figures { display: grid; grid-template-columns: repeat(auto-fit, minmax(9.5rem, 1fr)); gap: .8rem; margin: 1.6rem 0 1rem; }
.figure {
  display: flex; flex-direction: column; padding: .8rem 1rem; color: inherit; text-decoration: none;
  background: var(--sheet); border: 1px solid var(--line); border-left: 4px solid var(--allowed); border-radius: 6px;
}
.figure:hover { border-color: var(--link); }
.figure .label { color: var(--soft); font-size: .86em; }
.figure b { font-size: 1.5rem; font-weight: 600; line-height: 1.3; }
.figure.attention { border-left-color: var(--partial); }
.attention-list { margin: 0; padding: .8rem 1.2rem .8rem 2.2rem; background: var(--sheet); border: 1px solid var(--line); border-radius: 6px; }
p.attention-list { padding-left: 1.2rem; }
.attention-list li { margin: .15rem 0; overflow-wrap: anywhere; }
nav { display: flex; flex-wrap: wrap; gap: .3rem 1.3rem; margin: 1.4rem 0 0; }

main > section { margin-top: 2.2rem; padding: 1.3rem 1.4rem 1.5rem; background: var(--sheet); border: 1px solid var(--line); border-radius: 6px; }
.unanswered { margin: 0 0 .8rem; padding: .7rem 1rem; border-left: 4px solid var(--denied); background: var(--denied-band); }

table { width: 100%; border-collapse: separate; border-spacing: 0; font-size: .88rem; }
th, td { padding: .42rem .7rem .42rem 0; text-align: left; vertical-align: top; border-bottom: 1px solid var(--line); overflow-wrap: break-word; }
th { font-weight: 600; }
thead th { position: sticky; top: 0; z-index: 1; background: var(--sheet); color: var(--soft); font-size: .86rem; vertical-align: bottom; border-bottom: 2px solid var(--line); overflow-wrap: normal; }
thead th::first-letter { text-transform: uppercase; }
td small, th.title small { display: block; font-weight: 400; line-height: 1.35; }
.group th { padding: .55rem .7rem; background: var(--band); }
.long, .group th { overflow-wrap: anywhere; }
.group small { font-weight: 400; margin-left: .4rem; }
.group + tr td { border-top: 0; }
tbody + tbody .group th { border-top: 1rem solid var(--sheet); }
tr.fault td { background: var(--denied-band); }
tr.fault td:first-child { padding-left: .6rem; }
.findings td:nth-child(1) { width: 4.5rem; }
.findings td:nth-child(2) { width: 8rem; }

.chip { display: inline-block; padding: .05rem .6rem .05rem .4rem; border-radius: 1rem; font-weight: 600; font-size: .88em; white-space: nowrap; }
.chip i { display: inline-block; width: .72em; height: .72em; margin-right: .4em; border: 2px solid currentColor; border-radius: 50%; vertical-align: -.04em; }
.allowed { color: var(--allowed); background: var(--allowed-band); }
.allowed i { background: currentColor; }
.partial { color: var(--partial); background: var(--partial-band); }
.partial i { background: linear-gradient(90deg, currentColor 50%, transparent 50%); }
.denied { color: var(--denied); background: var(--denied-band); }
.denied i { background: linear-gradient(45deg, transparent 40%, currentColor 40%, currentColor 60%, transparent 60%); }
.matrix td small { display: inline-block; margin: 0 .3rem; }
.matrix .whole small { display: block; margin: 0; }
.waiting { color: var(--partial); font-weight: 600; }
.matrix { table-layout: fixed; }
.matrix th[scope=row] { width: 11rem; font-weight: 500; }
.matrix .whole > tr > * { border-bottom-width: 2px; }
.matrix tbody tr:hover > * { background: var(--band); }
.matrix td + td, .matrix th + td { border-left: 1px solid var(--line); padding-left: .5rem; padding-right: .3rem; }
.matrix thead th + th { padding-left: .5rem; }
.matrix thead th + th::first-letter { text-transform: none; }

figure { display: flex; flex-wrap: wrap; gap: 1rem 3rem; margin: 0 0 1.6rem; }
figure svg { flex: 0 1 auto; max-width: 100%; height: auto; }
figcaption { flex: 1 1 18rem; }
figcaption ul { margin: 0; padding-left: 1.1rem; }
figcaption b { font-weight: 600; }
figcaption .fault { color: var(--denied); }
svg text { font: 13px system-ui, "Segoe UI", Roboto, Arial, sans-serif; fill: var(--text); }
svg .controller { font-weight: 600; }
svg .order { fill: var(--soft); text-anchor: end; }
svg .lost { fill: var(--denied); font-weight: 600; }
svg .box { fill: var(--band); }
svg .needs { fill: var(--allowed-band); }
svg .arrow path { fill: none; stroke: var(--allowed); stroke-width: 1.6; }
svg .arrow .tip { fill: var(--allowed); stroke: none; }
svg .arrow.fault path { stroke: var(--denied); stroke-dasharray: 5 3; }
svg .arrow.fault .tip { fill: var(--denied); }

dl { display: grid; grid-template-columns: repeat(auto-fill, minmax(14rem, 1fr)); gap: .8rem 1.5rem; margin: 0; }
dt { color: var(--soft); font-size: .86em; }
dd { margin: 0; overflow-wrap: anywhere; }

@media screen and (max-width: 79rem) {
  th, td { overflow-wrap: anywhere; }
  body { padding: 1.2rem .7rem 3rem; }
  main > section { padding: 1rem .9rem; }
  table, tbody { display: block; }
  thead { position: absolute; clip-path: inset(50%); width: 1px; height: 1px; overflow: hidden; }
  tr { display: grid; grid-template-columns: repeat(auto-fill, minmax(8.2rem, 1fr)); gap: .35rem .9rem; padding: .7rem 0; border-bottom: 1px solid var(--line); }
  tr.group, tbody + tbody tr.group { display: block; padding: 0; border: 0; margin-top: .6rem; }
  tbody + tbody .group th { border-top: 0; }
  .group th { display: block; position: sticky; top: 0; }
  .group small { display: block; margin-left: 0; }
  th[scope=row] { grid-column: 1 / -1; order: -1; }
  th, td, .matrix tr > th, .matrix tr > td { padding: 0; border: 0; }
  th.title small { display: inline; margin-left: .4rem; }
  .nothing { display: none; }
  .matrix td small { display: block; margin: 0; }
  .matrix tbody + tbody tr { grid-template-columns: 1fr 1fr; }
  .matrix tbody + tbody th { grid-column: 1; grid-row: 1; }
  .matrix tbody + tbody td { grid-column: 2; }
  td, .findings td:nth-child(n) { display: block; width: auto; }
  td::before { content: attr(data-label); display: block; color: var(--soft); font-size: .8em; }
  td[colspan]::before { content: none; }
  td:empty { display: none; }
  .findings td:nth-child(3) { grid-column: 1 / -1; }
  .matrix th[scope=row] { width: auto; font-weight: 600; }
  tr.fault { padding-left: .6rem; background: var(--denied-band); }
}

@page { size: landscape; margin: 13mm; }
@media print {
  :root {
    --page: #fff; --sheet: #fff; --text: #000; --soft: #444; --line: #bbb; --band: #eee; --link: #000;
    --allowed: #0b4f73; --allowed-band: #e3f0f7; --partial: #6b4600; --partial-band: #fdf1d7; --denied: #8a1a3c; --denied-band: #fbe6ec;
  }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  body { max-width: none; padding: 0; font-size: 9.5pt; }
  nav { display: none; }
  a { text-decoration: none; }
  main > section { padding: 0; border: 0; margin-top: 8mm; }
  #policy, #service-units, #enforce-data, #findings { break-before: page; margin-top: 0; }
  h2, h3, .group { break-after: avoid; }
  tr, .figure, figure, li, dl div { break-inside: avoid; }
  table { font-size: 7.5pt; }
  thead { display: table-header-group; }
  thead th { position: static; font-size: 7pt; }
  th, td { padding: .7mm 1.5mm .7mm 0; }
  .matrix th[scope=row] { width: 34mm; }
  .matrix td + td, .matrix th + td, .matrix thead th + th { padding-left: 1mm; padding-right: 0; }
  .matrix td small { margin: 0; }
  .matrix th, .matrix td { padding-top: .35mm; padding-bottom: .35mm; }
  .note { margin-bottom: 2mm; max-width: none; }
  .chip { padding: 0 1.2mm 0 .8mm; }
  figure { gap: 2mm 6mm; }
  figure svg { width: auto; max-height: 158mm; }
}
)css";

} // namespace Vrnt
