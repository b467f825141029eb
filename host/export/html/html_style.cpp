#include "host/export/html/html_style.h"

namespace vornwout {

std::string_view htmlStyleSheet() {
  return R"css(
:root{color-scheme:light dark;--paper:#fff;--side:#f6f7f9;--text:#1d2430;--quiet:#586274;--line:#d9dee6;
--soft:#eef1f5;--head:#f6f7f9;--accent:#0b5fa5;--warn:#8a5300;--warn-back:#fff6e5;--err:#a31621;--err-back:#fdeeee;
--info-back:#eaf3fb}
@media (prefers-color-scheme:dark){:root{--paper:#14181f;--side:#191e27;--text:#e3e7ee;--quiet:#9aa5b6;--line:#323a48;
--soft:#222935;--head:#1b212b;--accent:#7cb8f2;--warn:#f2c063;--warn-back:#2b2414;--err:#ff9d9d;--err-back:#301b1d;
--info-back:#172636}}
*{box-sizing:border-box}
html{-webkit-text-size-adjust:100%;scroll-padding-top:1rem}
body{margin:0;background:var(--paper);color:var(--text);font:1rem/1.6 system-ui,-apple-system,"Segoe UI","Noto Sans",
"DejaVu Sans",sans-serif;display:grid;grid-template-columns:minmax(0,1fr)}
a{color:var(--accent);text-underline-offset:.15em}
a:focus-visible,.wide:focus-visible,summary:focus-visible{outline:2px solid var(--accent);outline-offset:2px;
border-radius:2px}
.skip{position:absolute;left:-99rem}
.skip:focus{left:1rem;top:1rem;background:var(--paper);padding:.5rem 1rem;z-index:2}
.unseen{position:absolute;width:1px;height:1px;overflow:hidden;clip-path:inset(50%);white-space:nowrap}
main{min-width:0;width:100%;max-width:72rem;padding:1.5rem 1.25rem 4rem}
h1,h2,h3,h4,h5,h6{line-height:1.25;margin:2.2rem 0 .8rem;font-weight:650;overflow-wrap:anywhere;text-wrap:balance}
h1{font-size:1.9rem;margin-top:.5rem;letter-spacing:-.01em}
h2{font-size:1.45rem;letter-spacing:-.005em}
h3{font-size:1.2rem}
h4,h5,h6{font-size:1rem}
main>section>h2{border-top:1px solid var(--line);padding-top:1.6rem}
.layer{color:var(--quiet);font-size:1rem;margin:1.6rem 0 .4rem}
p,ul,ol,blockquote,pre{margin:0 0 1rem}
.text{max-width:44rem;overflow-wrap:anywhere}
li>ul,li>ol{margin:0}
.text p,.text li,th,td,caption,.caption,dd,.facts dt,.message{white-space:pre-wrap}
th,td{max-width:40rem;overflow-wrap:break-word}
blockquote{border-left:3px solid var(--line);padding-left:1rem;color:var(--quiet)}
blockquote p:last-child{margin:0}
code,pre{font-family:ui-monospace,"SFMono-Regular","DejaVu Sans Mono",monospace;font-size:.9em}
pre{background:var(--soft);padding:.8rem 1rem;border-radius:6px;overflow-x:auto}
.object{margin:0 0 2.2rem}
.wide{overflow-x:auto;margin:0 0 .6rem;padding:1px}
table{border-collapse:collapse;min-width:min(100%,24rem);font-size:.9rem;line-height:1.4;font-variant-numeric:tabular-nums lining-nums;
border-top:2px solid var(--text);border-bottom:2px solid var(--text)}
caption{text-align:left;font-weight:650;font-size:1rem;padding:0 0 .5rem}
th,td{padding:.28rem .7rem;text-align:left;vertical-align:top}
th{font-weight:600}
thead th,thead td{vertical-align:bottom;background:var(--head);border-bottom:1px solid var(--line)}
thead tr:last-child th,thead tr:last-child td{border-bottom-color:var(--quiet)}
thead th[colspan]:not(.corner){border-left:1px solid var(--line)}
.corner{color:var(--quiet);font-weight:500}
tbody tr{border-top:1px solid var(--line)}
tbody tr:first-child{border-top:0}
tbody th{font-weight:500}
tbody .group{font-weight:650}
tbody tr:hover td,tbody tr:hover th[scope=row]{background:var(--soft)}
.n,.r{text-align:right}
.n{white-space:nowrap}
.c{text-align:center}
.limited tbody td,.limited thead th:not(.corner,[colspan]){min-width:var(--least,0);max-width:var(--most,40rem)}
.limited .n{max-width:none}
.looked,.looked tr{border:0}
.looked thead th,.looked thead td{background:none}
sup{font-size:.75em;line-height:0;margin-left:.15em;font-weight:400}
sup a{text-decoration:none;padding:.2em}
.looked sup a{color:inherit}
.caption{color:var(--quiet);font-size:.9rem;margin:0 0 .4rem;max-width:44rem}
.notes{margin:0;font-size:.85rem;color:var(--quiet);max-width:44rem}
.notes div{display:flex;gap:.5rem}
.notes div:target{background:var(--soft)}
.notes dt{min-width:1rem;font-weight:600}
.notes dd{margin:0}
.facts{display:grid;grid-template-columns:minmax(8rem,max-content) 1fr;gap:.3rem 1.2rem;font-size:.9rem;margin:0}
.facts dt{color:var(--quiet)}
.facts dd{margin:0;overflow-wrap:anywhere}
figure{margin:0}
img{display:block;max-width:100%;height:auto;background:#fff}
.message{border-left:4px solid var(--accent);background:var(--info-back);padding:.6rem 1rem;border-radius:0 6px 6px 0;
max-width:44rem}
.warning{border-color:var(--warn);background:var(--warn-back)}
.error{border-color:var(--err);background:var(--err-back)}
.aside{color:var(--quiet);font-style:italic}
.layers{display:flex;flex-wrap:wrap;gap:.4rem}
.layers>input{appearance:none;width:0;height:1px;margin:0 -.4rem 0 0;align-self:center}
.layers>label{border:1px solid var(--line);border-radius:99px;padding:.15rem .8rem;font-size:.9rem;cursor:pointer}
.layers>label:hover{background:var(--soft)}
.layers>input:checked+label{background:var(--accent);border-color:var(--accent);color:var(--paper)}
.layers>input:focus-visible+label{outline:2px solid var(--accent);outline-offset:2px}
.layers>.panel{display:none;order:1;width:100%;margin-top:.6rem}
.layers>input:checked+label+.panel{display:block}
.panel>.layer,.layerlist .layer{display:none}
.layerlist>details{border:1px solid var(--line);border-radius:6px;margin:0 0 .3rem;padding:0 .8rem}
.layerlist>details[open]{padding-bottom:.6rem}
.layerlist summary{cursor:pointer;padding:.3rem 0}
.cut{display:none}
@media (forced-colors:active){.layers>input:checked+label{forced-color-adjust:none;background:Highlight;
color:HighlightText;border-color:Highlight}}
nav{background:var(--side);border-bottom:1px solid var(--line);padding:.7rem 1.25rem;font-size:.9rem}
nav summary{cursor:pointer;font-weight:650;padding:.25rem 0}
nav ul{list-style:none;margin:0;padding:0 0 0 .9rem}
nav details>ul{padding:0;max-height:14rem;overflow-y:auto}
nav li{margin:0}
nav a{display:block;padding:.2rem .4rem;color:var(--text);text-decoration:none;border-radius:4px;overflow-wrap:anywhere}
nav a:hover{background:var(--soft);color:var(--accent)}
nav li.heading>a{font-weight:600;margin-top:.3rem}
@media (min-width:64rem){
body{grid-template-columns:17rem minmax(0,1fr)}
nav{border:0;border-right:1px solid var(--line);height:100vh;position:sticky;top:0;overflow-y:auto;padding:1.5rem 1rem}
nav details>ul{max-height:none}
main{padding:2rem 3rem 5rem}}
@media (prefers-color-scheme:dark){td.ink,th.ink,span.ink{background:#e9ecf1}
img{filter:brightness(.92)}}
@page broad{size:landscape}
@media print{:root{color-scheme:light;--paper:#fff;--text:#000;--quiet:#333;--line:#bbb;--soft:#fff;--head:#fff;
--accent:#000}
body{display:block;font-size:10pt}
nav,.skip,.layers>input,.layers>label{display:none}
.layers,.layers>.panel,.panel>.layer,.layerlist .layer,.cut{display:block}
.layerlist summary{display:none}
.layerlist>details{border:0;padding:0}
.layerlist>details::details-content{content-visibility:visible;block-size:auto}
.object:has(.broad){page:broad}
.cut{break-before:avoid}
main{max-width:none;padding:0}
.wide{overflow:visible}
table{font-size:8.5pt}
table,.layer,.caption,.notes,.text{print-color-adjust:exact;-webkit-print-color-adjust:exact}
td.ink,th.ink,span.ink{background:none}
th,td{padding:.15rem .4rem}
.wide:has(>.small) table{font-size:6pt}
.wide:has(>.small) :is(th,td){padding:.1rem .25rem}
thead{display:table-header-group}
tr,img,.message{break-inside:avoid}
h1,h2,h3,h4,h5,h6,caption{break-after:avoid}
a{color:inherit;text-decoration:none}
img{filter:none}}
)css";
}

}  // namespace vornwout
