<% Session.Abandon
Response.Write "gone" %>
