; What the theme is made of, one element a line.
background=pebbles.gif
rule=rule.gif
style=theme.css
text=#34525a
heading=#155a63
link=#3c8f8c
