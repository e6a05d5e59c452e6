; What the theme is made of, one element a line.
background=waves.gif
rule=rule.gif
style=theme.css
text=#d5dcf2
heading=#ffd873
link=#7fb0cf
