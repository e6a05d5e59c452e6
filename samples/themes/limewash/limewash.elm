; What the theme is made of, one element a line.
background=boards.gif
rule=rule.gif
bullet=bullet.gif
style=theme.css
text=#33291f
heading=#33291f
link=#7a3e12
visited=#5c4a3a
